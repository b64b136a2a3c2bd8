// In-place edits of profile-file text for the profile engine's write operation.
#include "storage/ProfileEditor.h"

#include "storage/ProfileLines.h"

namespace zorvik::profile {

namespace {

std::string entryLine(std::string_view key, std::string_view value) {
    std::string line;
    line.reserve(key.size() + value.size() + 1);
    line.append(key).append("=").append(value);
    return line;
}

bool endsWithLineBreak(std::string_view text) {
    return !text.empty() && (text.back() == '\n' || text.back() == '\r');
}

} // namespace

std::string ProfileEditor::newFile(std::string_view section, std::string_view key,
                                   std::string_view value) {
    std::string text;
    text.append("[").append(section).append("]\r\n");
    text.append(entryLine(key, value)).append("\r\n");
    return text;
}

std::string ProfileEditor::setKey(std::string_view text, std::string_view section,
                                  std::string_view key, std::string_view value) {
    // New lines use the line break the file already has, so an LF or CR file stays uniform;
    // a file without any line break gets CRLF.
    const std::string_view eol = lineBreakOf(text);
    const std::optional<SectionRange> range = findSection(text, section);
    std::string out;
    out.reserve(text.size() + key.size() + value.size() + section.size() + 8);

    if (!range) {
        out.append(text);
        if (!out.empty() && !endsWithLineBreak(out))
            out.append(eol);
        out.append("[").append(section).append("]").append(eol);
        out.append(entryLine(key, value)).append(eol);
        return out;
    }

    std::optional<ProfileLine> lastEntry;
    LineReader reader(text.substr(0, range->bodyEnd), range->header.next);
    ProfileLine line;
    while (reader.next(line)) {
        if (line.kind != LineKind::Entry)
            continue;
        if (equalsIgnoreCase(line.name, key)) {
            // The old value starts at the first non-blank after '=' (or right after '=' when
            // the value is empty) and runs to the end of the line.
            std::size_t start = line.equals + 1;
            while (start < line.end && isBlank(text[start]))
                ++start;
            if (start == line.end)
                start = line.equals + 1;
            out.append(text.substr(0, start)).append(value).append(text.substr(line.end));
            return out;
        }
        lastEntry = line;
    }

    const ProfileLine& after = lastEntry ? *lastEntry : range->header;
    // After a last line without a line break, the new line needs one in front of it.
    out.append(text.substr(0, after.next));
    if (!after.hasLineBreak())
        out.append(eol);
    out.append(entryLine(key, value)).append(eol);
    out.append(text.substr(after.next));
    return out;
}

std::optional<std::string> ProfileEditor::deleteKey(std::string_view text, std::string_view section,
                                                    std::string_view key) {
    const std::optional<SectionRange> range = findSection(text, section);
    if (!range)
        return std::nullopt;
    LineReader reader(text.substr(0, range->bodyEnd), range->header.next);
    ProfileLine line;
    while (reader.next(line)) {
        if (line.kind == LineKind::Entry && equalsIgnoreCase(line.name, key)) {
            std::string out(text.substr(0, line.begin));
            out.append(text.substr(line.next));
            return out;
        }
    }
    return std::nullopt;
}

std::optional<std::string> ProfileEditor::deleteSection(std::string_view text,
                                                        std::string_view section) {
    const std::optional<SectionRange> range = findSection(text, section);
    if (!range)
        return std::nullopt;
    std::string out(text.substr(0, range->header.begin));
    out.reserve(text.size());
    LineReader reader(text.substr(0, range->bodyEnd), range->header.next);
    ProfileLine line;
    while (reader.next(line)) {
        if (line.kind != LineKind::Entry)
            out.append(text.substr(line.begin, line.next - line.begin));
    }
    out.append(text.substr(range->bodyEnd));
    return out;
}

} // namespace zorvik::profile
