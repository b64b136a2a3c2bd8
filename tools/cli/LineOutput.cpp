// Whole lines to standard output: each line is built first and written with one call.
#include "LineOutput.h"

#include "StopSignals.h"

#include <cerrno>
#include <cstring>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace zorvik::cli {

namespace {

long writeSome(int descriptor, const char* data, std::size_t size) {
#ifdef _WIN32
    return ::_write(descriptor, data, static_cast<unsigned>(size));
#else
    return static_cast<long>(::write(descriptor, data, size));
#endif
}

} // namespace

bool LineOutput::writeLine(std::string line) {
    if (error_ != 0)
        return false;
    line.push_back('\n');
    std::size_t done = 0;
    while (done < line.size()) {
        const long n = writeSome(descriptor_, line.data() + done, line.size() - done);
        if (n < 0) {
            if (errno == EINTR) {
                // A stop signal while nothing of the line is out yet drops the line; once
                // part of it is out, the rest follows so that no half line is left.
                if (done == 0 && stopRequested() != 0) {
                    error_ = EINTR;
                    return false;
                }
                continue;
            }
            error_ = errno != 0 ? errno : EIO;
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

bool LineOutput::closedByReader() const {
    return error_ == EPIPE;
}

std::string LineOutput::errorText() const {
    return error_ == 0 ? std::string() : std::string(std::strerror(error_));
}

} // namespace zorvik::cli
