// Fuzz target: the profile (INI) engine on random files. The input is a file (or none) and a
// list of operations: reads of a value, of the key names or section names with buffers of
// random size, writes, deletions of a key or a section, cInifile writes and reads, removing
// the file. After each operation:
// - a read fits its buffer, ends in a NUL, and is a prefix of the same read with a large buffer;
//   reads leave the file alone;
// - a written value reads back as the read rules give it (blanks around it removed, one pair
//   of outer quotes removed, 254 characters through cInifile), whenever the names and value
//   can be read back at all (no line break, no ']' in the section, no '=' in the key, ...);
// - a change alters only the bytes of the line it concerns (or appends a section), a deleted
//   key removes one key line, a deleted section only header and key lines. A Unicode file
//   (UTF-16 LE, beginning with FF FE) stays one, and the same holds for its text.
#include "FuzzInput.h"
#include "ProfileChanges.h"
#include "storage/ProfileFile.h"
#include "storage/ProfileText.h"
#include "storage/cInifile.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace zorvik;
using namespace zorvik::fuzz;

namespace {

/// A folder for the file under test, on a memory file system when there is one.
const std::string& scratchFile() {
    static const std::string path = [] {
        std::string base = fs::is_directory("/dev/shm") ? "/dev/shm" : fs::temp_directory_path();
        std::string pattern = base + "/zorvik-fuzz-ini-XXXXXX";
        if (!::mkdtemp(pattern.data()))
            fail("no scratch folder for the profile file");
        static const std::string folder = pattern;
        std::atexit([] {
            std::error_code ec;
            fs::remove_all(folder, ec);
        });
        return folder + "/fuzz.ini";
    }();
    return path;
}

std::optional<std::string> fileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

std::string_view cText(std::string_view text) {
    return text.substr(0, text.find('\0'));
}
std::string_view trim(std::string_view text, bool tabsToo) {
    auto cut = [tabsToo](char c) { return c == ' ' || (tabsToo && c == '\t'); };
    while (!text.empty() && cut(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && cut(text.back()))
        text.remove_suffix(1);
    return text;
}
bool hasLineBreak(std::string_view text) {
    return text.find_first_of("\r\n") != std::string_view::npos;
}

/// The value as a read gives it back: blanks around it removed, then one outer pair of quotes.
std::string readForm(std::string_view value) {
    value = trim(value, true);
    if (value.size() >= 2 && value.front() == value.back() &&
        (value.front() == '"' || value.front() == '\''))
        value = value.substr(1, value.size() - 2);
    return std::string(value);
}

/// Names and a value that, once written, can be found again by the read rules.
bool readable(std::string_view section, std::string_view key, std::string_view value) {
    if (hasLineBreak(section) || hasLineBreak(key) || hasLineBreak(value))
        return false;
    if (section.find(']') != std::string_view::npos || trim(section, true) != section)
        return false;
    if (key.find('=') != std::string_view::npos || trim(key, true) != key)
        return false;
    return key.empty() || (key.front() != ';' && key.front() != '[');
}

void checkRead(const std::optional<std::string>& section, const std::optional<std::string>& key,
               const std::optional<std::string>& defaultText, std::uint32_t size,
               const std::string& path, const std::optional<std::string>& file) {
    // Nothing a read gives can be longer than the file or the default.
    const auto large = static_cast<std::uint32_t>(file.value_or("").size() + 400);
    const auto full = ProfileFile::getPrivateProfileString(section, key, defaultText, large, path);
    const auto part = ProfileFile::getPrivateProfileString(section, key, defaultText, size, path);
    check(full.count + 2 < large, "a read filled a buffer larger than the file");
    if (size == 0) {
        check(part.count == 0 && part.buffer.empty(), "a read with size 0 returned something");
        return;
    }
    check(part.count <= size - 1, "a read returned more than its buffer holds");
    check(part.buffer[part.count] == '\0', "a read did not end in a NUL");
    check(part.buffer.compare(0, part.count, full.buffer, 0, part.count) == 0,
          "a read with a small buffer is not the start of the same read with a large one");
    const std::uint32_t asValue = std::min(full.count, size - 1);
    const std::uint32_t asList = full.count + 2 <= size ? full.count : (size >= 2 ? size - 2 : 0);
    if (section && key) {
        check(part.count == asValue, "a value read was not cut to size - 1");
    } else if (!section && !file) {
        check(part.count == 0, "the section list of a missing file is not empty");
    } else {
        check(part.count == asValue || part.count == asList, "a list read was cut wrongly");
        if (part.count == asList && part.count < full.count && size >= 2)
            check(part.buffer[size - 2] == '\0' && part.buffer[size - 1] == '\0',
                  "a list cut short does not end in two NULs");
    }
}

void checkReadBack(const std::string& section, const std::string& key, const std::string& value,
                   const std::string& path) {
    const std::string expected = readForm(value);
    const auto full =
        ProfileFile::getPrivateProfileString(section, key, "\x01missing", 70000, path);
    check(full.buffer.substr(0, full.count) == expected, "a written value does not read back",
          "section [" + section + "] key [" + key + "] wrote [" + value + "] read [" +
              full.buffer.substr(0, full.count) + "]");
    cInifile ini;
    ini.setPath(path);
    ini.setSection(section);
    ini.setKey(key);
    check(ini.Value() == expected.substr(0, 254), "cInifile does not read a written value back",
          "read [" + ini.Value() + "]");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string& path = scratchFile();
    FuzzInput in(data, size);
    std::error_code ec;
    fs::remove(path, ec);
    const std::uint8_t mode = in.byte();
    const std::string initial = in.text(in.u16() % 4096);
    if (mode & 1) {
        std::ofstream out(path, std::ios::binary);
        out.write(initial.data(), static_cast<std::streamsize>(initial.size()));
    }

    for (int step = 0; step < 16 && !in.empty(); ++step) {
        const std::optional<std::string> before = fileBytes(path);
        const std::uint8_t op = in.byte() % 8;
        const std::optional<std::string> section = in.optionalText(40);
        const std::optional<std::string> key = in.optionalText(40);
        const std::optional<std::string> value = in.optionalText(300);
        const std::uint32_t bufferSize = in.u16() % 600;

        if (op <= 2) {
            // A value, the key names of a section, the section names.
            checkRead(op == 2 ? std::nullopt : section, op == 0 ? key : std::nullopt, value,
                      bufferSize, path, before);
            check(fileBytes(path) == before, "a read changed the file");
            continue;
        }
        if (op == 7) {
            fs::remove(path, ec);
            continue;
        }
        if (op == 6) {
            // cInifile: NULs are removed from the value, which then reads back at most 254
            // characters long.
            cInifile ini;
            ini.setPath(path);
            ini.setSection(section.value_or(""));
            ini.setKey(key.value_or(""));
            std::string text = value.value_or("");
            std::string clean;
            for (const char c : text) {
                if (c != '\0')
                    clean += c;
            }
            ini.setValue(text);
            check(text == clean, "cInifile left a NUL in the caller's value");
            check(ini.Success(), "cInifile could not write into a writable folder");
            const std::string s(trim(cText(section.value_or("")), false));
            const std::string k(trim(cText(key.value_or("")), false));
            if (readable(s, k, clean))
                checkReadBack(s, k, clean, path);
            continue;
        }

        // op 3: write a value; 4: delete a key; 5: delete a section.
        const std::optional<std::string> keyArg =
            op == 5 ? std::nullopt : std::optional<std::string>(key.value_or(""));
        const std::optional<std::string> valueArg =
            op == 3 ? std::optional<std::string>(value.value_or("")) : value;
        const std::optional<std::string> written = op == 4 ? std::nullopt : valueArg;
        const std::int32_t result =
            ProfileFile::writePrivateProfileString(section, keyArg, written, path);
        const std::optional<std::string> after = fileBytes(path);
        if (!section) {
            check(result == 0, "a write without a section succeeded");
            check(after == before, "a write without a section changed the file");
            continue;
        }
        check(result != 0, "a write into a writable folder failed");
        check(after.has_value(), "a successful write left no file");
        // The change is judged on the files' texts: for a Unicode file, its characters in
        // UTF-8, and the caller's names and value as they stand in it.
        const ProfileText oldText = ProfileText::decode(before.value_or(""));
        const ProfileText newText = ProfileText::decode(*after);
        check(!before || newText.encoding() == oldText.encoding(),
              "a write changed the file's encoding");
        const std::string& old = oldText.text();
        const std::string& now = newText.text();
        const std::string s(trim(cText(*section), false));
        if (op == 3) {
            const std::string k(trim(cText(*keyArg), false));
            const std::string v(cText(*written));
            if (const auto wrong = ProfileChanges::checkWrite(
                    old, now, oldText.fromCaller(s), oldText.fromCaller(k), oldText.fromCaller(v)))
                fail("a write changed the file wrongly", *wrong);
            if (readable(s, k, v))
                checkReadBack(s, k, v, path);
        } else if (!before) {
            check(after->empty(), "deleting from a missing file did not leave an empty file");
        } else if (op == 4) {
            if (const auto wrong = ProfileChanges::checkDeleteKey(old, now))
                fail("deleting a key changed the file wrongly", *wrong);
        } else {
            if (const auto wrong = ProfileChanges::checkDeleteSection(old, now))
                fail("deleting a section changed the file wrongly", *wrong);
        }
    }
    return 0;
}
