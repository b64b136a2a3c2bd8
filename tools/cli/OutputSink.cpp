// Buffered whole-line output of zorvik-cli.
#include "OutputSink.h"

#include "StopSignals.h"

#include <cerrno>
#include <cstring>

#ifdef _WIN32
#include <io.h>
#else
#include <climits>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace zorvik::cli {

namespace {

/// The buffer is written out once it holds this much.
constexpr std::size_t kFlushAt = std::size_t(1) << 20;

long writeSome(const char* data, std::size_t size) {
#ifdef _WIN32
    return ::_write(1, data, static_cast<unsigned>(size));
#else
    return static_cast<long>(::write(1, data, size));
#endif
}

} // namespace

OutputSink::OutputSink() {
    buffer_.reserve(kFlushAt + 64 * 1024);
#ifndef _WIN32
    // A pipe takes a write of up to PIPE_BUF bytes whole or not at all: written in such pieces,
    // each of whole lines, a reader never gets half a line, even when a stop signal comes
    // while the reader has stalled and the pipe is full.
    struct stat st {};
    if (::fstat(1, &st) == 0 && (S_ISFIFO(st.st_mode) || S_ISSOCK(st.st_mode)))
        piece_ = PIPE_BUF;
#endif
}

OutputSink::OutputSink(const std::string& path)
    : file_(std::make_unique<AtomicFile::Writer>(path)) {
    buffer_.reserve(kFlushAt + 64 * 1024);
    if (!file_->ok()) {
        error_ = EACCES;
        fileError_ = file_->error();
    }
}

OutputSink::~OutputSink() = default;

void OutputSink::endLine() {
    buffer_ += '\n';
    if (buffer_.size() >= kFlushAt)
        flush();
}

bool OutputSink::writeLine(std::string_view line) {
    buffer_ += line;
    endLine();
    return !failed();
}

bool OutputSink::writeOut(std::string_view bytes, std::size_t& written) {
    written = 0;
    if (file_) {
        if (!file_->write(bytes)) {
            error_ = EIO;
            fileError_ = file_->error();
            return false;
        }
        written = bytes.size();
        return true;
    }
    std::size_t limit = bytes.size();
    while (written < limit) {
        // The next piece: whole lines, at most `piece_` bytes (at least one line).
        std::size_t size = limit - written;
        if (size > piece_) {
            const std::size_t end = bytes.rfind('\n', written + piece_ - 1);
            size = (end != std::string_view::npos && end >= written)
                       ? end + 1 - written
                       : std::min(limit, bytes.find('\n', written) + 1) - written;
        }
        const long n = writeSome(bytes.data() + written, size);
        if (n < 0) {
            if (errno == EINTR) {
                if (stopRequested() != 0) {
                    // Stopped: between lines the rest is dropped; inside one (a line longer
                    // than a piece) that line is finished first, so that no half line is left.
                    const bool betweenLines = written == 0 || bytes[written - 1] == '\n';
                    if (betweenLines) {
                        error_ = EINTR;
                        return false;
                    }
                    limit = bytes.find('\n', written) + 1;
                }
                continue;
            }
            error_ = errno != 0 ? errno : EIO;
            return false;
        }
        written += static_cast<std::size_t>(n);
        // A stop while a write went out in part: the line under way is finished, the rest is
        // dropped.
        if (stopRequested() != 0 && written < limit) {
            const std::size_t end =
                bytes[written - 1] == '\n' ? written - 1 : bytes.find('\n', written);
            limit = std::min(limit, end + 1);
        }
    }
    if (limit < bytes.size()) {
        error_ = EINTR;
        return false;
    }
    return true;
}

bool OutputSink::flush() {
    if (failed()) {
        buffer_.clear();
        return false;
    }
    if (buffer_.empty())
        return true;
    std::size_t written = 0;
    const bool ok = writeOut(buffer_, written);
    buffer_.clear();
    return ok;
}

bool OutputSink::finish() {
    if (!flush())
        return false;
    if (file_ && !file_->commit()) {
        error_ = EIO;
        fileError_ = file_->error();
        return false;
    }
    return true;
}

bool OutputSink::closedByReader() const {
    return error_ == EPIPE;
}

std::string OutputSink::errorText() const {
    if (!fileError_.empty())
        return fileError_;
    return error_ == 0 ? std::string() : std::string(std::strerror(error_));
}

} // namespace zorvik::cli
