// Changes to the text of a profile file: set a key, delete a key, delete a section. Every
// byte that the change does not concern stays exactly as it was.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zorvik::profile {

class ProfileEditor {
public:
    /// Text of a file that did not exist: "[section]\r\nkey=value\r\n".
    static std::string newFile(std::string_view section, std::string_view key,
                               std::string_view value);

    /// Gives `key` of the first `section` the value `value`. An existing key keeps its line:
    /// everything up to where the old value starts (indent, key spelling, blanks, '=') stays,
    /// the rest of the line becomes `value`. A new key goes after the last key line of the
    /// section (comment lines below it stay below); a new section is appended at the end.
    static std::string setKey(std::string_view text, std::string_view section, std::string_view key,
                              std::string_view value);

    /// Removes the line of the first `key` in the first `section`; nullopt when there is none.
    static std::optional<std::string> deleteKey(std::string_view text, std::string_view section,
                                                std::string_view key);

    /// Removes the header and the key lines of the first `section`; comments, blank lines and
    /// other lines inside it stay. nullopt when there is no such section.
    static std::optional<std::string> deleteSection(std::string_view text,
                                                    std::string_view section);
};

} // namespace zorvik::profile
