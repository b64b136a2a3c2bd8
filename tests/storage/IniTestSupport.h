// Helpers of the storage tests: a scratch folder per test, whole-file reads and writes, and a
// read through the profile engine that returns the buffer and the count.
#pragma once

#include "storage/ProfileFile.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>

namespace zorvik::testing {

/// A fresh empty folder, removed with everything in it at the end of the test.
class TempDir {
public:
    TempDir() {
        static std::atomic<unsigned> counter{0};
        const auto base = std::filesystem::temp_directory_path();
        for (;;) {
            m_path = base / ("zorvik-ini-test-" + std::to_string(std::random_device{}()) + "-" +
                             std::to_string(++counter));
            if (std::filesystem::create_directory(m_path))
                break;
        }
    }
    ~TempDir() {
        std::error_code ec;
        // Folders made read-only by a test must become writable again to be removed.
        for (auto it = std::filesystem::recursive_directory_iterator(m_path, ec);
             it != std::filesystem::recursive_directory_iterator(); it.increment(ec)) {
            std::filesystem::permissions(it->path(), std::filesystem::perms::owner_all,
                                         std::filesystem::perm_options::add, ec);
        }
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ec);
        std::filesystem::remove_all(m_path, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::string file(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

inline void writeBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(out.good()) << path;
}

inline std::string readBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline std::string fixture(const std::string& name) {
    return readBytes(std::filesystem::path(ZORVIK_TEST_DATA) / "ini" / name);
}

/// Read through the engine with a buffer of `size` bytes pre-filled with '#', so that tests
/// see exactly which bytes the read wrote.
struct Read {
    std::string buffer;
    std::uint32_t count;
    /// The first n bytes of the buffer.
    std::string head(std::size_t n) const { return buffer.substr(0, n); }
};

inline Read readProfile(const OptionalText& section, const OptionalText& key,
                        const OptionalText& def, std::uint32_t size, const std::string& path) {
    Read r{std::string(size, '#'), 0};
    r.count =
        ProfileFile::getPrivateProfileString(section, key, def, std::span<char>(r.buffer), path);
    return r;
}

/// The value as cInifile would take it: the first `count` bytes of the buffer.
inline std::string readValue(const std::string& section, const std::string& key,
                             const std::string& path, const OptionalText& def = std::nullopt,
                             std::uint32_t size = 1024) {
    const Read r = readProfile(section, key, def, size, path);
    return r.buffer.substr(0, r.count);
}

using namespace std::string_literals;

} // namespace zorvik::testing
