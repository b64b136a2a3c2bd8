// What a change to a profile (INI) file may do to the file's bytes: a written key replaces
// the value part of one line, inserts one line after an existing line, or appends a section;
// a deleted key takes one key line away; a deleted section takes only header and key lines
// away. Every other byte stays as it was. Judged independently of the profile engine.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zorvik::fuzz {

/// One line of a text, as offsets: [begin, end) its characters, [end, next) its line break.
struct LineSpan {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t next = 0;
};

class ProfileChanges {
public:
    /// CRLF, LF and a lone CR each end a line.
    static std::vector<LineSpan> lines(std::string_view text);
    /// The first line break of the text; CRLF when it has none.
    static std::string firstLineBreak(std::string_view text);
    /// A line whose first non-blank character is '['.
    static bool isHeader(std::string_view line);
    /// A line with '=' that is neither a comment (';') nor a header.
    static bool isEntry(std::string_view line);

    /// Nothing when `after` is `before` with `key`=`value` written into `section` (the names
    /// as they go into the file); otherwise what is wrong.
    static std::optional<std::string> checkWrite(std::string_view before, std::string_view after,
                                                 std::string_view section, std::string_view key,
                                                 std::string_view value);
    /// Nothing when `after` is `before` with one key line removed, or unchanged.
    static std::optional<std::string> checkDeleteKey(std::string_view before,
                                                     std::string_view after);
    /// Nothing when `after` is `before` with header and key lines removed, or unchanged.
    static std::optional<std::string> checkDeleteSection(std::string_view before,
                                                         std::string_view after);
};

} // namespace zorvik::fuzz
