// Diagnosis of a serial device that would not open (POSIX; elsewhere the system's text).
#include "instrument/PortDiagnosis.h"

#if defined(__unix__) || defined(__APPLE__)
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>
#define ZORVIK_POSIX_PORTS 1
#endif

namespace zorvik {

#ifdef ZORVIK_POSIX_PORTS

namespace {

std::string processName(long pid) {
    std::ifstream comm("/proc/" + std::to_string(pid) + "/comm");
    std::string name;
    std::getline(comm, name);
    std::string text = name.empty() ? std::string("a program") : name;
    text += " (process ";
    text += std::to_string(pid);
    text += ')';
    return text;
}

bool processAlive(long pid) {
    return pid > 0 && (::kill(static_cast<pid_t>(pid), 0) == 0 || errno == EPERM);
}

// The lock file programs put in the system's lock folder for a serial device ("LCK..ttyUSB0",
// holding the locking process's number).
std::string lockFileHolder(const std::string& device) {
    const std::string base = device.substr(device.find_last_of('/') + 1);
    for (const char* folder :
         {"/var/lock", "/run/lock", "/var/spool/locks", "/var/spool/uucp", "/etc/locks", "/tmp"}) {
        std::ifstream lock(std::string(folder) + "/LCK.." + base);
        if (!lock)
            continue;
        long pid = 0;
        lock >> pid;
        if (processAlive(pid) && pid != static_cast<long>(::getpid()))
            return processName(pid);
    }
    return {};
}

// A process of this user (or any, for the administrator) with the device open.
std::string openFileHolder(const std::string& device) {
    char wanted[PATH_MAX];
    if (!::realpath(device.c_str(), wanted))
        return {};
    DIR* proc = ::opendir("/proc");
    if (!proc)
        return {};
    std::string holder;
    const long self = static_cast<long>(::getpid());
    while (dirent* entry = ::readdir(proc)) {
        char* end = nullptr;
        const long pid = std::strtol(entry->d_name, &end, 10);
        if (*end != '\0' || pid <= 0 || pid == self)
            continue;
        const std::string fdFolder = "/proc/" + std::string(entry->d_name) + "/fd";
        DIR* fds = ::opendir(fdFolder.c_str());
        if (!fds)
            continue;
        while (dirent* fd = ::readdir(fds)) {
            char target[PATH_MAX];
            const std::string link = fdFolder + "/" + fd->d_name;
            const ssize_t n = ::readlink(link.c_str(), target, sizeof target - 1);
            if (n <= 0)
                continue;
            target[n] = '\0';
            if (std::strcmp(target, wanted) == 0) {
                holder = processName(pid);
                break;
            }
        }
        ::closedir(fds);
        if (!holder.empty())
            break;
    }
    ::closedir(proc);
    return holder;
}

std::string groupName(gid_t gid) {
    if (const group* g = ::getgrgid(gid))
        return g->gr_name;
    return std::to_string(gid);
}

} // namespace

std::string deviceHolder(const std::string& device) {
    std::string holder = lockFileHolder(device);
    if (holder.empty())
        holder = openFileHolder(device);
    return holder;
}

bool deviceAccessible(const std::string& device) {
    return ::access(device.c_str(), R_OK | W_OK) == 0;
}

PortReport diagnoseDevice(int port, const std::string& device, const std::string& systemText) {
    PortReport r;
    r.port = port;
    r.device = device;
    struct stat st {};
    if (::stat(device.c_str(), &st) != 0) {
        r.outcome = (errno == ENOENT || errno == ENOTDIR) ? PortOutcome::NotPresent
                                                          : PortOutcome::OpenFailed;
        if (r.outcome == PortOutcome::OpenFailed)
            r.detail = std::strerror(errno);
        return r;
    }
    if (!S_ISCHR(st.st_mode)) {
        r.outcome = PortOutcome::NotASerialDevice;
        return r;
    }
    if (!deviceAccessible(device) && errno == EACCES) {
        r.outcome = PortOutcome::PermissionDenied;
        r.detail = groupName(st.st_gid);
        return r;
    }
    if (std::string holder = lockFileHolder(device); !holder.empty()) {
        r.outcome = PortOutcome::Busy;
        r.detail = std::move(holder);
        return r;
    }
    const int fd = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        const int error = errno;
        if (error == EBUSY) {
            r.outcome = PortOutcome::Busy;
            r.detail = openFileHolder(device);
        } else if (error == EACCES || error == EPERM) {
            r.outcome = PortOutcome::PermissionDenied;
            r.detail = groupName(st.st_gid);
        } else if (error == ENXIO || error == ENODEV || error == ENOENT) {
            r.outcome = PortOutcome::NotPresent;
        } else {
            r.outcome = PortOutcome::OpenFailed;
            r.detail = std::strerror(error);
        }
        return r;
    }
    const bool serial = ::isatty(fd) != 0;
    ::close(fd);
    if (!serial) {
        r.outcome = PortOutcome::NotASerialDevice;
        return r;
    }
    // It opens here but not for the program: most likely another program holds it.
    if (std::string holder = openFileHolder(device); !holder.empty()) {
        r.outcome = PortOutcome::Busy;
        r.detail = std::move(holder);
        return r;
    }
    r.outcome = PortOutcome::OpenFailed;
    r.detail = systemText;
    return r;
}

#else

std::string deviceHolder(const std::string&) {
    return {};
}

bool deviceAccessible(const std::string&) {
    return true;
}

PortReport diagnoseDevice(int port, const std::string& device, const std::string& systemText) {
    PortReport r;
    r.port = port;
    r.device = device;
    r.outcome = PortOutcome::OpenFailed;
    r.detail = systemText;
    return r;
}

#endif

} // namespace zorvik
