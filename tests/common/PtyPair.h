// A raw pseudo-terminal pair for tests: the test writes on the master, the program reads the
// slave device like a serial port.
#pragma once

#include <fcntl.h>
#include <stdlib.h>
#include <string>
#include <termios.h>
#include <unistd.h>
#include <vector>

namespace zorvik::test {

class PtyPair {
public:
    PtyPair() {
        // Both ends close on exec: a program the test starts must not keep them open, or a
        // port the test closes would not vanish for it.
        const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        char name[256] = {};
        if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0 ||
            ptsname_r(master, name, sizeof name) != 0) {
            if (master >= 0)
                ::close(master);
            return;
        }
        const int slave = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (slave < 0) {
            ::close(master);
            return;
        }
        master_ = master;
        termios t{};
        tcgetattr(slave, &t);
        cfmakeraw(&t);
        tcsetattr(slave, TCSANOW, &t);
        slave_ = slave; // kept open so the device stays valid while the program reopens it
        path_ = name;
        fcntl(master_, F_SETFL, fcntl(master_, F_GETFL) | O_NONBLOCK);
    }
    ~PtyPair() { closeAll(); }
    PtyPair(const PtyPair&) = delete;
    PtyPair& operator=(const PtyPair&) = delete;

    bool ok() const { return master_ >= 0; }
    const std::string& path() const { return path_; }

    /// Writes without waiting; returns how many bytes the terminal took (fewer when full).
    std::size_t write(const std::vector<unsigned char>& bytes) const {
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t n = ::write(master_, bytes.data() + done, bytes.size() - done);
            if (n <= 0)
                break;
            done += static_cast<std::size_t>(n);
        }
        return done;
    }

    /// The master side, for tests that write from a thread of their own.
    int masterFd() const { return master_; }

    /// Closes both ends: the device node disappears and an open port fails.
    void closeAll() {
        if (slave_ >= 0)
            ::close(slave_);
        if (master_ >= 0)
            ::close(master_);
        slave_ = master_ = -1;
    }

private:
    int master_ = -1;
    int slave_ = -1;
    std::string path_;
};

} // namespace zorvik::test
