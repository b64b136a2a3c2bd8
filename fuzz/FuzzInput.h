// Reading a fuzz input as a little program: bytes, small numbers and short texts taken from
// the front, and the check that stops a run with a readable report when an invariant breaks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace zorvik::fuzz {

/// Stops the run (libFuzzer records the input as a crash; the corpus replay fails).
[[noreturn]] inline void fail(std::string_view what, std::string_view detail = {}) {
    std::fputs("zorvik fuzz: invariant broken: ", stderr);
    std::fwrite(what.data(), 1, what.size(), stderr);
    std::fputc('\n', stderr);
    std::fwrite(detail.data(), 1, detail.size(), stderr);
    std::fputc('\n', stderr);
    std::abort();
}

inline void check(bool condition, std::string_view what, std::string_view detail = {}) {
    if (!condition)
        fail(what, detail);
}

/// Takes values from the front of the input; past its end every value reads as 0 or empty.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    bool empty() const { return m_pos >= m_size; }
    std::size_t left() const { return m_size - m_pos; }

    std::uint8_t byte() { return empty() ? 0 : m_data[m_pos++]; }
    std::uint16_t u16() {
        const std::uint16_t low = byte();
        return static_cast<std::uint16_t>(low | (byte() << 8));
    }
    /// Up to `count` bytes as text (fewer at the end of the input).
    std::string text(std::size_t count) {
        const std::size_t n = count < left() ? count : left();
        std::string out(reinterpret_cast<const char*>(m_data + m_pos), n);
        m_pos += n;
        return out;
    }
    /// A text whose length (0 to maxLength) comes first.
    std::string shortText(std::size_t maxLength) { return text(byte() % (maxLength + 1)); }
    /// A text whose length comes first (one byte, two when maxLength is above 255); one length
    /// value in 16 stands for "no text at all".
    std::optional<std::string> optionalText(std::size_t maxLength) {
        const std::size_t n = maxLength > 255 ? u16() : byte();
        if (n % 16 == 15)
            return std::nullopt;
        return text(n % (maxLength + 1));
    }
    /// Everything that is left.
    std::string rest() { return text(left()); }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_pos = 0;
};

/// A small deterministic generator (splitmix64) for choices derived from a seed in the input.
class SplitMix {
public:
    explicit SplitMix(std::uint64_t seed) : m_state(seed) {}
    std::uint64_t next() {
        std::uint64_t z = (m_state += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    /// 0 .. bound - 1.
    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(next() % bound); }

private:
    std::uint64_t m_state;
};

} // namespace zorvik::fuzz
