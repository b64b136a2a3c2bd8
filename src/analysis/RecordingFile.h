// The file a recording writes to: each line handed to the system as it comes, so what was
// recorded stays in the file, readable up to the last whole frame, however the program ends.
#pragma once

#include <string>
#include <string_view>

namespace zorvik {

class RecordingFile {
public:
    RecordingFile() = default;
    ~RecordingFile();
    RecordingFile(const RecordingFile&) = delete;
    RecordingFile& operator=(const RecordingFile&) = delete;

    /// Creates `path`, which must not exist yet (a recording never overwrites a file); false
    /// with the system's reason in error() otherwise.
    bool create(const std::string& path);
    /// Writes `text` whole (in one system call where the system allows, so a kill leaves no
    /// half line unless the disk itself fills); false with the reason in error().
    bool write(std::string_view text);
    void close();

    bool isOpen() const { return fd_ >= 0; }
    const std::string& error() const { return error_; }
    /// Bytes written since create().
    long long bytes() const { return bytes_; }

private:
    int fd_ = -1;
    long long bytes_ = 0;
    std::string error_;
};

} // namespace zorvik
