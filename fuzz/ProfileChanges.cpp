// Byte-level judgement of the changes the profile engine makes to a file.
#include "ProfileChanges.h"

#include <vector>

namespace zorvik::fuzz {

namespace {

bool blank(char c) {
    return c == ' ' || c == '\t';
}

/// The first character that is not a space or a tab; nothing for a blank line (a NUL byte is
/// an ordinary character here).
std::optional<char> firstNonBlank(std::string_view line) {
    for (const char c : line) {
        if (!blank(c))
            return c;
    }
    return std::nullopt;
}

std::string show(std::string_view text) {
    std::string out;
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (c == '\r')
            out += "\\r";
        else if (c == '\n')
            out += "\\n";
        else if (u < 0x20 || u >= 0x7F)
            out += "\\x" + std::string(1, "0123456789abcdef"[u >> 4]) + "0123456789abcdef"[u & 15];
        else
            out += c;
    }
    return out;
}

std::string mismatch(const char* what, std::string_view before, std::string_view after) {
    return std::string(what) + "\n  before: \"" + show(before) + "\"\n  after:  \"" + show(after) +
           "\"";
}

} // namespace

std::vector<LineSpan> ProfileChanges::lines(std::string_view text) {
    std::vector<LineSpan> out;
    std::size_t pos = 0;
    while (pos < text.size()) {
        LineSpan line;
        line.begin = pos;
        line.end = text.find_first_of("\r\n", pos);
        if (line.end == std::string_view::npos)
            line.end = text.size();
        line.next = line.end;
        if (line.next < text.size())
            line.next += (text.compare(line.next, 2, "\r\n") == 0) ? 2 : 1;
        out.push_back(line);
        pos = line.next;
    }
    return out;
}

std::string ProfileChanges::firstLineBreak(std::string_view text) {
    const std::size_t at = text.find_first_of("\r\n");
    if (at == std::string_view::npos)
        return "\r\n";
    if (text.compare(at, 2, "\r\n") == 0)
        return "\r\n";
    return std::string(1, text[at]);
}

bool ProfileChanges::isHeader(std::string_view line) {
    return firstNonBlank(line) == '[';
}

bool ProfileChanges::isEntry(std::string_view line) {
    const std::optional<char> first = firstNonBlank(line);
    return first && *first != ';' && *first != '[' && line.find('=') != std::string_view::npos;
}

std::optional<std::string>
ProfileChanges::checkWrite(std::string_view before, std::string_view after,
                           std::string_view section, std::string_view key, std::string_view value) {
    if (after == before)
        return std::nullopt;
    const std::string br = firstLineBreak(before);
    const std::string entry = std::string(key) + "=" + std::string(value);

    // A new section at the end, after a line break added to a last line that lacked one.
    std::string appended(before);
    if (!appended.empty() && appended.back() != '\n' && appended.back() != '\r')
        appended += br;
    appended += '[';
    appended += section;
    appended += ']';
    appended += br;
    appended += entry;
    appended += br;
    if (after == appended)
        return std::nullopt;

    // Only a line that starts at or before the first differing byte can be the one changed
    // or the one the new line follows.
    std::size_t same = 0;
    while (same < before.size() && same < after.size() && before[same] == after[same])
        ++same;
    for (const LineSpan& line : lines(before)) {
        if (line.begin > same)
            break;
        const std::string_view text = before.substr(line.begin, line.end - line.begin);
        // The value part of a key line replaced: from just after '=' or after the blanks
        // that follow it, to the end of the line.
        if (isEntry(text)) {
            const std::size_t equals = line.begin + text.find('=');
            for (std::size_t start = equals + 1; start <= line.end; ++start) {
                const std::string changed = std::string(before.substr(0, start)) +
                                            std::string(value) +
                                            std::string(before.substr(line.end));
                if (after == changed)
                    return std::nullopt;
                if (start == line.end || !blank(before[start]))
                    break;
            }
        }
        // A new key line right after this line.
        std::string inserted(before.substr(0, line.next));
        if (line.next == line.end)
            inserted += br;
        inserted += entry + br;
        inserted += before.substr(line.next);
        if (after == inserted)
            return std::nullopt;
    }
    return mismatch("the write changed more than one key line", before, after);
}

std::optional<std::string> ProfileChanges::checkDeleteKey(std::string_view before,
                                                          std::string_view after) {
    if (after == before)
        return std::nullopt;
    for (const LineSpan& line : lines(before)) {
        if (!isEntry(before.substr(line.begin, line.end - line.begin)))
            continue;
        if (after.size() + (line.next - line.begin) == before.size() &&
            after.substr(0, line.begin) == before.substr(0, line.begin) &&
            after.substr(line.begin) == before.substr(line.next))
            return std::nullopt;
    }
    return mismatch("deleting a key did more than remove one key line", before, after);
}

std::optional<std::string> ProfileChanges::checkDeleteSection(std::string_view before,
                                                              std::string_view after) {
    // The file afterwards must be the lines of the file before, some of them left out, and
    // every line left out a header or a key line. Which lines went is not known, and a line
    // can be the start of another ("[A]" ended by a lone CR is the start of "[A]" ended by
    // CR LF), so every way of matching is followed: the set of places in `after` that the
    // lines so far can have reached.
    std::vector<bool> reached(after.size() + 1, false);
    reached[0] = true;
    for (const LineSpan& line : lines(before)) {
        const std::string_view whole = before.substr(line.begin, line.next - line.begin);
        const std::string_view text = before.substr(line.begin, line.end - line.begin);
        const bool removable = isHeader(text) || isEntry(text);
        std::vector<bool> next(after.size() + 1, false);
        bool any = false;
        for (std::size_t at = 0; at <= after.size(); ++at) {
            if (!reached[at])
                continue;
            if (removable)
                next[at] = any = true;
            if (after.substr(at, whole.size()) == whole)
                next[at + whole.size()] = any = true;
        }
        if (!any)
            return mismatch("deleting a section removed a line that is neither a header nor a "
                            "key line, or changed one",
                            before, after);
        reached.swap(next);
    }
    if (!reached[after.size()])
        return mismatch("deleting a section added bytes", before, after);
    return std::nullopt;
}

} // namespace zorvik::fuzz
