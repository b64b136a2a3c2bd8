// Line scanner of the profile engine: splits the file text and classifies each line.
#include "storage/ProfileLines.h"

#include <algorithm>
#include <cstring>

namespace zorvik::profile {

namespace {

std::size_t findLineBreak(std::string_view text, std::size_t from) {
    // The first LF, then the first CR before it: two block searches instead of a test of
    // every byte, since every look-up of a key runs through the file line by line.
    if (from >= text.size())
        return text.size();
    const char* const base = text.data();
    const auto* lf = static_cast<const char*>(std::memchr(base + from, '\n', text.size() - from));
    const std::size_t end = lf ? static_cast<std::size_t>(lf - base) : text.size();
    const auto* cr = static_cast<const char*>(std::memchr(base + from, '\r', end - from));
    return cr ? static_cast<std::size_t>(cr - base) : end;
}

char lowerAscii(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

bool LineReader::next(ProfileLine& line) {
    if (m_pos >= m_text.size())
        return false;
    line = ProfileLine{};
    line.begin = m_pos;
    line.end = findLineBreak(m_text, m_pos);
    line.next = line.end;
    if (line.next < m_text.size()) {
        if (m_text[line.next] == '\r' && line.next + 1 < m_text.size() &&
            m_text[line.next + 1] == '\n')
            line.next += 2;
        else
            line.next += 1;
    }
    m_pos = line.next;

    std::size_t p = line.begin;
    while (p < line.end && isBlank(m_text[p]))
        ++p;
    if (p == line.end) {
        line.kind = LineKind::Blank;
        return true;
    }
    const std::string_view rest = m_text.substr(p, line.end - p);
    if (rest.front() == ';') {
        line.kind = LineKind::Comment;
    } else if (rest.front() == '[') {
        // The name ends at the first ']'; a missing ']' takes the rest of the line.
        line.kind = LineKind::Header;
        const std::size_t close = rest.find(']', 1);
        line.name = trimBlanks(
            rest.substr(1, close == std::string_view::npos ? rest.size() - 1 : close - 1));
    } else {
        const std::size_t eq = rest.find('=');
        if (eq == std::string_view::npos) {
            line.kind = LineKind::Text;
        } else {
            line.kind = LineKind::Entry;
            line.name = trimBlanks(rest.substr(0, eq));
            line.equals = p + eq;
            line.value = trimBlanks(rest.substr(eq + 1));
        }
    }
    return true;
}

std::optional<SectionRange> findSection(std::string_view text, std::string_view name) {
    LineReader reader(text);
    ProfileLine line;
    while (reader.next(line)) {
        if (line.kind != LineKind::Header || !equalsIgnoreCase(line.name, name))
            continue;
        SectionRange range{line, text.size()};
        ProfileLine body;
        LineReader bodyReader(text, line.next);
        while (bodyReader.next(body)) {
            if (body.kind == LineKind::Header) {
                range.bodyEnd = body.begin;
                break;
            }
        }
        return range;
    }
    return std::nullopt;
}

std::string_view trimBlanks(std::string_view text) {
    std::size_t b = 0;
    std::size_t e = text.size();
    while (b < e && isBlank(text[b]))
        ++b;
    while (e > b && isBlank(text[e - 1]))
        --e;
    return text.substr(b, e - b);
}

std::string_view trimSpaces(std::string_view text) {
    std::size_t b = 0;
    while (b < text.size() && text[b] == ' ')
        ++b;
    return trimTrailingSpaces(text.substr(b));
}

std::string_view trimTrailingSpaces(std::string_view text) {
    std::size_t e = text.size();
    while (e > 0 && text[e - 1] == ' ')
        --e;
    return text.substr(0, e);
}

bool equalsIgnoreCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return lowerAscii(x) == lowerAscii(y);
           });
}

std::string_view unquote(std::string_view value) {
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front())
        return value.substr(1, value.size() - 2);
    return value;
}

std::string_view cString(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

std::string_view lineBreakOf(std::string_view text) {
    const std::size_t at = findLineBreak(text, 0);
    if (at == text.size())
        return "\r\n";
    if (text[at] == '\n')
        return "\n";
    if (at + 1 < text.size() && text[at + 1] == '\n')
        return "\r\n";
    return "\r";
}

} // namespace zorvik::profile
