// Where zorvik-cli writes its output: whole lines through a large buffer, to standard output
// or to a file that is put in place in one step when the command has finished.
#pragma once

#include "storage/AtomicFile.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace zorvik::cli {

/// Lines are built straight into the buffer (`text()`, then `endLine()`) and handed to the
/// system in large writes, so a reader only ever sees whole lines: a stop signal that
/// interrupts a write before any of it went out drops the buffered lines; once some of a
/// write is out, the line it was in is finished first. Once a write fails, everything later is
/// refused; `closedByReader()` tells a closed pipe from other errors.
class OutputSink {
public:
    /// Standard output.
    OutputSink();
    /// The file `path`: it appears, or replaces the old one, only at `finish()`; a command that
    /// fails before leaves the old file (or none) as it was.
    explicit OutputSink(const std::string& path);
    ~OutputSink();
    OutputSink(const OutputSink&) = delete;
    OutputSink& operator=(const OutputSink&) = delete;

    /// The text of the lines being built; append to it, then end each line with endLine().
    std::string& text() { return buffer_; }
    /// Ends the line being built; writes the buffer out once it holds a megabyte.
    void endLine();
    /// Appends a whole line (its line end is added); false when the output failed.
    bool writeLine(std::string_view line);
    /// Writes every whole line now (capture does this after each read); false when the
    /// output failed.
    bool flush();
    /// Writes the rest and, for a file, puts it in place; false when that failed.
    bool finish();

    bool failed() const { return error_ != 0; }
    /// True when the output failed because nothing reads it any more (a closed pipe).
    bool closedByReader() const;
    /// The system's text for the failure.
    std::string errorText() const;

private:
    bool writeOut(std::string_view bytes, std::size_t& written);

    std::unique_ptr<AtomicFile::Writer> file_;
    std::string buffer_;
    int error_ = 0;
    std::string fileError_;
    std::size_t piece_ = std::string::npos; ///< the largest write (PIPE_BUF into a pipe)
};

} // namespace zorvik::cli
