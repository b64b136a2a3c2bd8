// The profile-file engine: reads and writes INI files with the observable behaviour of the
// Windows profile-string functions (GetPrivateProfileStringA / WritePrivateProfileStringA),
// on every platform. The file is read afresh at every call; nothing is cached.
//
// Callers speak 8-bit text. A file is 8-bit bytes passed through unchanged (a UTF-8 byte-order
// mark is just three bytes of line 1), unless it begins with the UTF-16 LE mark: such a
// Unicode file is read as UTF-16 and stays UTF-16 with its mark when written (ProfileText).
// Every argument is seen as a C string: a NUL ends it. std::nullopt stands for the NULL pointer
// of the Windows functions.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace zorvik {

class ProfileText;

using OptionalText = std::optional<std::string>;

class ProfileFile {
public:
    /// Values are read in full up to this many characters.
    static constexpr std::size_t kMaxValueLength = 65535;

    /// Fills `buffer` and returns the count of characters copied:
    /// - section and key given: the key's value (blanks around it removed, then one outer pair
    ///   of matching quotes), or the default when the file, the section or the key is missing;
    ///   the default loses trailing spaces (only 0x20). A NULL default is "". What does not fit
    ///   is cut to size - 1 characters plus a NUL and size - 1 is returned; size 0 copies
    ///   nothing and returns 0.
    /// - key NULL: the key names of the section, each followed by a NUL, plus one more NUL; the
    ///   count leaves the final NUL out. A missing section gives the default instead.
    /// - section NULL: the section names of the file in the same form; a missing file gives 0
    ///   with only buffer[0] set to NUL.
    /// A list fits only when the buffer has room for it, its final NUL and one byte more;
    /// otherwise the first size - 2 characters are copied, then two NULs, and size - 2 is
    /// returned. size < 2 gives 0.
    static std::uint32_t getPrivateProfileString(const OptionalText& section,
                                                 const OptionalText& key,
                                                 const OptionalText& defaultText,
                                                 std::span<char> buffer, const std::string& path);

    /// What a read with a fresh buffer of `size` spaces leaves: the whole buffer and the count.
    struct ReadResult {
        std::string buffer;
        std::uint32_t count = 0;
    };
    static ReadResult getPrivateProfileString(const OptionalText& section, const OptionalText& key,
                                              const OptionalText& defaultText, std::uint32_t size,
                                              const std::string& path);

    /// Writes `value` to `key` in `section` (both stripped of spaces), creating the file, the
    /// section and the key as needed. Key NULL deletes the section (header and key lines;
    /// comments stay) and ignores the value; value NULL deletes the key. Deleting what is not
    /// there succeeds and changes nothing; deleting from a missing file creates it empty.
    /// Returns non-zero on success. Returns 0 and changes nothing for a NULL section, an empty
    /// path, a missing or read-only folder, a read-only file, or a folder where the file
    /// should be. The file is replaced atomically and keeps its permissions.
    static std::int32_t writePrivateProfileString(const OptionalText& section,
                                                  const OptionalText& key,
                                                  const OptionalText& value,
                                                  const std::string& path);

    /// What writePrivateProfileString does to the text of a file, without the file: the new
    /// text for a file holding `contents` (std::nullopt: no file yet), or std::nullopt when the
    /// write changes nothing (deleting what is not there, or a NULL section). Lets a caller
    /// make several changes in memory and then replace the file once.
    static std::optional<std::string> editText(const std::optional<std::string>& contents,
                                               const OptionalText& section, const OptionalText& key,
                                               const OptionalText& value);

    /// What writePrivateProfileString does to a file's text, in the file's own encoding: the
    /// caller's 8-bit section, key and value are converted into it first. False (and `file`
    /// unchanged) when the write changes nothing.
    static bool edit(ProfileText& file, const OptionalText& section, const OptionalText& key,
                     const OptionalText& value);
};

} // namespace zorvik
