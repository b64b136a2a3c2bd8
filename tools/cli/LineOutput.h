// Whole lines to standard output: each line is built first and written with one call.
#pragma once

#include <string>

namespace zorvik::cli {

/// Writes complete lines to a descriptor (standard output by default). A line is handed to
/// the system in one write (continued only if the system takes part of it), so a reader never
/// sees half a line from an interrupted program: a stop signal that interrupts a write before
/// any of the line went out drops the line and fails the output. Once a write fails, every later
/// line is refused too; `closedByReader()` tells a closed pipe from other write errors.
class LineOutput {
public:
    explicit LineOutput(int descriptor = 1) : descriptor_(descriptor) {}

    /// Appends the line end and writes the line; false when the output failed.
    bool writeLine(std::string line);

    bool failed() const { return error_ != 0; }
    /// True when the write failed because nothing reads the output any more.
    bool closedByReader() const;
    /// The system's text for the failure.
    std::string errorText() const;

private:
    int descriptor_;
    int error_ = 0;
};

} // namespace zorvik::cli
