// The entries of the options dialog's port list: "COM n" for port n, and back.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zorvik {

/// The list entry of port n: "COM " followed by the number ("COM 3").
std::string portListText(int n);

/// The port number of a list entry "COM n". Ports stop at 8, so the number is the single
/// digit right after "COM "; anything else (an empty text, another prefix, a digit 0 or 9,
/// more characters behind the digit) is not a port entry and gives std::nullopt.
std::optional<std::int16_t> portFromListText(std::string_view text);

} // namespace zorvik
