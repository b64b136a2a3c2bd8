// The text of a profile file as the engine works on it, whatever the file's encoding. A file
// is 8-bit text (Windows-1252 bytes passed through unchanged) unless it begins with the UTF-16
// little-endian byte-order mark FF FE: then it is a Unicode profile file, read as UTF-16 LE and
// written back as UTF-16 LE with its mark. The engine works on a Unicode file's text in UTF-8,
// where every character the file's syntax uses ('[', ']', '=', ';', blanks, line breaks) is the
// same single byte as in an 8-bit file; callers keep speaking 8-bit text, converted at the
// border: a character that Windows-1252 cannot hold reaches them as '?'.
#pragma once

#include <string>
#include <string_view>

namespace zorvik {

class ProfileText {
public:
    enum class Encoding {
        Ansi,    ///< 8-bit text, bytes as they are
        Utf16Le, ///< UTF-16 little-endian, beginning with the mark FF FE
    };

    /// No file yet: a new file is always 8-bit text.
    ProfileText() = default;
    /// The text of a file's bytes.
    static ProfileText decode(std::string_view bytes);

    bool exists() const { return exists_; }
    Encoding encoding() const { return encoding_; }
    /// The text the engine reads and edits (UTF-8 for a Unicode file, without its mark).
    const std::string& text() const { return text_; }
    /// Replaces the text (the file now exists).
    void setText(std::string text);
    /// The file's bytes for the text, in the file's own encoding (with the mark for UTF-16).
    std::string encode() const;

    /// A caller's 8-bit text (a section, key or value) as it stands in this file's text.
    std::string fromCaller(std::string_view ansi) const;
    /// Text of this file as the 8-bit text a caller gets.
    std::string toCaller(std::string_view text) const;

private:
    bool exists_ = false;
    Encoding encoding_ = Encoding::Ansi;
    std::string text_;
};

} // namespace zorvik
