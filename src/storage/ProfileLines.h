// Cutting the text of a profile (INI) file into lines and telling headers, entries and
// comments apart. Shared by the reading and the editing side of the profile engine.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace zorvik::profile {

enum class LineKind {
    Blank,   ///< nothing but spaces and tabs
    Comment, ///< first non-blank character is ';'
    Header,  ///< first non-blank character is '['
    Entry,   ///< a line with '=' (a key, possibly named "")
    Text,    ///< any other line: never a key, never listed
};

/// One physical line of the file. Offsets are positions in the whole file text.
struct ProfileLine {
    std::size_t begin = 0; ///< first character of the line
    std::size_t end = 0;   ///< one past the last character, before the line break
    std::size_t next = 0;  ///< start of the following line (after CRLF, LF, CR or nothing)
    LineKind kind = LineKind::Blank;
    std::string_view name;  ///< Header: section name; Entry: key name; trimmed of blanks
    std::size_t equals = 0; ///< Entry: offset of the '=' that splits the line
    std::string_view value; ///< Entry: value trimmed of blanks, outer quotes still on

    bool hasLineBreak() const { return next > end; }
};

/// Walks the lines of a file text from the start. CRLF, LF and a lone CR all end a line.
class LineReader {
public:
    explicit LineReader(std::string_view text, std::size_t from = 0) : m_text(text), m_pos(from) {}
    /// Fills `line` with the next line; false at the end of the text.
    bool next(ProfileLine& line);

private:
    std::string_view m_text;
    std::size_t m_pos;
};

/// Where the first occurrence of a section lies: its header line and the offset where its
/// body ends (the start of the next header line, or the end of the text).
struct SectionRange {
    ProfileLine header;
    std::size_t bodyEnd = 0;
};

/// First section whose trimmed name equals `name` (ASCII case-insensitive). Later sections
/// of the same name are never looked at.
std::optional<SectionRange> findSection(std::string_view text, std::string_view name);

/// Space or tab: the blanks that surround names and values in the file.
constexpr bool isBlank(char c) {
    return c == ' ' || c == '\t';
}
std::string_view trimBlanks(std::string_view text);
/// Only 0x20 is cut: the rule for the section and key names a caller passes.
std::string_view trimSpaces(std::string_view text);
std::string_view trimTrailingSpaces(std::string_view text);
/// ASCII letters compare case-insensitively; every other byte must match exactly.
bool equalsIgnoreCase(std::string_view a, std::string_view b);
/// A value of two or more characters that starts and ends with the same ' or " loses that
/// one outer pair; anything else comes back as it is.
std::string_view unquote(std::string_view value);
/// Text as a C string sees it: everything from the first NUL on is not there.
std::string_view cString(std::string_view text);
/// The line break the file already uses (the first one in it); CRLF for a file without any.
std::string_view lineBreakOf(std::string_view text);

} // namespace zorvik::profile
