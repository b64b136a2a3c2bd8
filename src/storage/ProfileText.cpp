// Decoding and encoding of profile files: 8-bit text as it is, UTF-16 LE to UTF-8 and back.
#include "storage/ProfileText.h"

#include <array>
#include <cstdint>

namespace zorvik {

namespace {

constexpr unsigned char kMark0 = 0xFF;
constexpr unsigned char kMark1 = 0xFE;

// Windows-1252 bytes 0x80..0x9F as Unicode; the five bytes the code page leaves undefined map
// to the control characters of the same number, as Windows' own conversion does.
constexpr std::array<char16_t, 32> kHigh = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t fromWindows1252(unsigned char byte) {
    if (byte >= 0x80 && byte <= 0x9F)
        return kHigh[byte - 0x80];
    return byte;
}

/// The Windows-1252 byte of a character, or '?' when the code page has none.
char toWindows1252(char32_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return static_cast<char>(c);
    for (std::size_t i = 0; i < kHigh.size(); ++i) {
        if (kHigh[i] == c)
            return static_cast<char>(0x80 + i);
    }
    return '?';
}

// UTF-8, extended to lone surrogates (as 3-byte sequences), so that any UTF-16 file, even one
// with a broken surrogate pair, comes back byte for byte.
void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

/// The next character of UTF-8 text at `at` (moved past it). The engine only ever makes the
/// text from valid sequences; a stray byte is taken as the character of the same number.
char32_t nextUtf8(std::string_view s, std::size_t& at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(s[i]); };
    const unsigned char b0 = byte(at);
    auto continuation = [&](std::size_t count) {
        for (std::size_t i = 1; i <= count; ++i) {
            if (at + i >= s.size() || (byte(at + i) & 0xC0) != 0x80)
                return false;
        }
        return true;
    };
    char32_t c = b0;
    std::size_t length = 1;
    if (b0 >= 0xF0 && b0 < 0xF8 && continuation(3)) {
        c = ((b0 & 0x07u) << 18) | ((byte(at + 1) & 0x3Fu) << 12) | ((byte(at + 2) & 0x3Fu) << 6) |
            (byte(at + 3) & 0x3Fu);
        length = 4;
    } else if (b0 >= 0xE0 && b0 < 0xF0 && continuation(2)) {
        c = ((b0 & 0x0Fu) << 12) | ((byte(at + 1) & 0x3Fu) << 6) | (byte(at + 2) & 0x3Fu);
        length = 3;
    } else if (b0 >= 0xC0 && b0 < 0xE0 && continuation(1)) {
        c = ((b0 & 0x1Fu) << 6) | (byte(at + 1) & 0x3Fu);
        length = 2;
    }
    at += length;
    return c;
}

void appendUtf16(std::string& out, char16_t unit) {
    out += static_cast<char>(unit & 0xFF);
    out += static_cast<char>(unit >> 8);
}

} // namespace

ProfileText ProfileText::decode(std::string_view bytes) {
    ProfileText t;
    t.exists_ = true;
    if (bytes.size() < 2 || static_cast<unsigned char>(bytes[0]) != kMark0 ||
        static_cast<unsigned char>(bytes[1]) != kMark1) {
        t.text_.assign(bytes);
        return t;
    }
    t.encoding_ = Encoding::Utf16Le;
    t.text_.reserve(bytes.size());
    // Code units after the mark; a last odd byte is no character and is left out.
    const std::size_t units = (bytes.size() - 2) / 2;
    auto unit = [&](std::size_t i) -> char16_t {
        return static_cast<char16_t>(static_cast<unsigned char>(bytes[2 + 2 * i]) |
                                     (static_cast<unsigned char>(bytes[3 + 2 * i]) << 8));
    };
    for (std::size_t i = 0; i < units; ++i) {
        const char16_t u = unit(i);
        if (u >= 0xD800 && u <= 0xDBFF && i + 1 < units) {
            const char16_t low = unit(i + 1);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                appendUtf8(t.text_, 0x10000 + ((char32_t(u) - 0xD800) << 10) + (low - 0xDC00));
                ++i;
                continue;
            }
        }
        appendUtf8(t.text_, u);
    }
    return t;
}

void ProfileText::setText(std::string text) {
    text_ = std::move(text);
    exists_ = true;
}

std::string ProfileText::encode() const {
    if (encoding_ == Encoding::Ansi)
        return text_;
    std::string out;
    out.reserve(2 + text_.size() * 2);
    out += static_cast<char>(kMark0);
    out += static_cast<char>(kMark1);
    for (std::size_t at = 0; at < text_.size();) {
        const char32_t c = nextUtf8(text_, at);
        if (c >= 0x10000) {
            appendUtf16(out, static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
            appendUtf16(out, static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
        } else {
            appendUtf16(out, static_cast<char16_t>(c));
        }
    }
    return out;
}

std::string ProfileText::fromCaller(std::string_view ansi) const {
    if (encoding_ == Encoding::Ansi)
        return std::string(ansi);
    std::string out;
    out.reserve(ansi.size());
    for (char c : ansi)
        appendUtf8(out, fromWindows1252(static_cast<unsigned char>(c)));
    return out;
}

std::string ProfileText::toCaller(std::string_view text) const {
    if (encoding_ == Encoding::Ansi)
        return std::string(text);
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();)
        out += toWindows1252(nextUtf8(text, at));
    return out;
}

} // namespace zorvik
