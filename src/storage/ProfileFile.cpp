// Read and write operations of the profile-file engine.
#include "storage/ProfileFile.h"

#include "storage/AtomicFile.h"
#include "storage/ProfileEditor.h"
#include "storage/ProfileLines.h"
#include "storage/ProfileText.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string_view>

namespace zorvik {

using namespace profile;

namespace {

// One text into the buffer: as much as fits before a closing NUL.
std::uint32_t copyText(std::string_view text, std::span<char> buffer) {
    if (buffer.empty())
        return 0;
    const std::size_t n = std::min(text.size(), buffer.size() - 1);
    std::copy_n(text.data(), n, buffer.data());
    buffer[n] = '\0';
    return static_cast<std::uint32_t>(n);
}

// A NUL-separated list (each name followed by its NUL) plus the final NUL. A list that exactly
// fills the buffer counts as not fitting, as on Windows, so a caller that sees size - 2 always
// knows to try again with a larger buffer.
std::uint32_t copyList(std::string_view list, std::span<char> buffer) {
    if (buffer.size() < 2) {
        if (!buffer.empty())
            buffer[0] = '\0';
        return 0;
    }
    if (list.size() + 2 <= buffer.size()) {
        std::copy_n(list.data(), list.size(), buffer.data());
        buffer[list.size()] = '\0';
        if (list.empty())
            buffer[1] = '\0';
        return static_cast<std::uint32_t>(list.size());
    }
    const std::size_t n = buffer.size() - 2;
    std::copy_n(list.data(), n, buffer.data());
    buffer[n] = '\0';
    buffer[n + 1] = '\0';
    return static_cast<std::uint32_t>(n);
}

std::uint32_t copyDefault(const OptionalText& defaultText, std::span<char> buffer) {
    if (!defaultText)
        return copyText({}, buffer);
    return copyText(trimTrailingSpaces(cString(*defaultText)), buffer);
}

std::string sectionNames(std::string_view text) {
    std::string list;
    LineReader reader(text);
    ProfileLine line;
    while (reader.next(line)) {
        if (line.kind == LineKind::Header)
            list.append(line.name).push_back('\0');
    }
    return list;
}

std::string keyNames(std::string_view text, const SectionRange& range) {
    std::string list;
    LineReader reader(text.substr(0, range.bodyEnd), range.header.next);
    ProfileLine line;
    while (reader.next(line)) {
        if (line.kind == LineKind::Entry)
            list.append(line.name).push_back('\0');
    }
    return list;
}

std::optional<std::string_view> findValue(std::string_view text, const SectionRange& range,
                                          std::string_view key) {
    LineReader reader(text.substr(0, range.bodyEnd), range.header.next);
    ProfileLine line;
    while (reader.next(line)) {
        if (line.kind == LineKind::Entry && equalsIgnoreCase(line.name, key))
            return unquote(line.value);
    }
    return std::nullopt;
}

/// The file as the engine reads it; a file that is missing or cannot be read has no text.
ProfileText readText(const std::filesystem::path& path, bool* notAFile = nullptr) {
    const AtomicFile::Contents file = AtomicFile::read(path);
    if (notAFile)
        *notAFile = file.status == AtomicFile::Status::NotAFile;
    return file.status == AtomicFile::Status::Read ? ProfileText::decode(file.bytes)
                                                   : ProfileText();
}

std::filesystem::path toPath(const std::string& path) {
    return std::filesystem::path(std::string(cString(path)));
}

} // namespace

std::uint32_t ProfileFile::getPrivateProfileString(const OptionalText& section,
                                                   const OptionalText& key,
                                                   const OptionalText& defaultText,
                                                   std::span<char> buffer,
                                                   const std::string& path) {
    const ProfileText file = readText(toPath(path));
    const std::string& text = file.text();

    if (!section) {
        if (!file.exists()) {
            if (!buffer.empty())
                buffer[0] = '\0';
            return 0;
        }
        return copyList(file.toCaller(sectionNames(text)), buffer);
    }

    const std::optional<SectionRange> range =
        file.exists() ? findSection(text, file.fromCaller(trimSpaces(cString(*section))))
                      : std::nullopt;
    if (!range)
        return copyDefault(defaultText, buffer);
    if (!key)
        return copyList(file.toCaller(keyNames(text, *range)), buffer);
    const std::optional<std::string_view> value =
        findValue(text, *range, file.fromCaller(trimSpaces(cString(*key))));
    if (!value)
        return copyDefault(defaultText, buffer);
    const std::string asRead = file.toCaller(*value);
    return copyText(std::string_view(asRead).substr(0, kMaxValueLength), buffer);
}

ProfileFile::ReadResult ProfileFile::getPrivateProfileString(const OptionalText& section,
                                                             const OptionalText& key,
                                                             const OptionalText& defaultText,
                                                             std::uint32_t size,
                                                             const std::string& path) {
    ReadResult result;
    result.buffer.assign(size, ' ');
    result.count =
        getPrivateProfileString(section, key, defaultText, std::span<char>(result.buffer), path);
    return result;
}

std::int32_t ProfileFile::writePrivateProfileString(const OptionalText& section,
                                                    const OptionalText& key,
                                                    const OptionalText& value,
                                                    const std::string& path) {
    const std::filesystem::path file = toPath(path);
    if (!section || file.empty())
        return 0;
    bool notAFile = false;
    ProfileText text = readText(file, &notAFile);
    if (notAFile)
        return 0;
    // Deleting what is not there leaves the file alone (its time stamp too). A value is
    // always written, even an unchanged one, so that a read-only file reports failure.
    if (!edit(text, section, key, value))
        return 1;
    return AtomicFile::replace(file, text.encode()) ? 1 : 0;
}

bool ProfileFile::edit(ProfileText& file, const OptionalText& section, const OptionalText& key,
                       const OptionalText& value) {
    if (!section)
        return false;
    // The caller's names and value as the file's own text; what a C string would not see
    // (from the first NUL on) is cut before, as in the file.
    auto inFile = [&](const OptionalText& t) -> OptionalText {
        if (!t)
            return std::nullopt;
        return file.fromCaller(cString(*t));
    };
    std::optional<std::string> updated =
        editText(file.exists() ? std::optional<std::string>(file.text()) : std::nullopt,
                 inFile(section), inFile(key), inFile(value));
    if (!updated)
        return false;
    file.setText(std::move(*updated));
    return true;
}

std::optional<std::string> ProfileFile::editText(const std::optional<std::string>& contents,
                                                 const OptionalText& section,
                                                 const OptionalText& key,
                                                 const OptionalText& value) {
    if (!section)
        return std::nullopt;
    const std::string_view sectionName = trimSpaces(cString(*section));
    const bool missing = !contents;
    if (!key) {
        return missing ? std::optional<std::string>(std::string())
                       : ProfileEditor::deleteSection(*contents, sectionName);
    }
    if (!value) {
        return missing
                   ? std::optional<std::string>(std::string())
                   : ProfileEditor::deleteKey(*contents, sectionName, trimSpaces(cString(*key)));
    }
    const std::string_view keyName = trimSpaces(cString(*key));
    const std::string_view text = cString(*value);
    return missing ? ProfileEditor::newFile(sectionName, keyName, text)
                   : ProfileEditor::setKey(*contents, sectionName, keyName, text);
}

} // namespace zorvik
