// The entries of the options dialog's port list.
#include "dialogs/PortListText.h"

#include "instrument/PortMap.h"

namespace zorvik {

namespace {
constexpr std::string_view kPrefix = "COM ";
}

std::string portListText(int n) {
    return std::string(kPrefix) + std::to_string(n);
}

std::optional<std::int16_t> portFromListText(std::string_view text) {
    if (text.size() != kPrefix.size() + 1 || text.substr(0, kPrefix.size()) != kPrefix)
        return std::nullopt;
    const char digit = text.back();
    if (digit < '0' + kFirstComPort || digit > '0' + kLastComPort)
        return std::nullopt;
    return static_cast<std::int16_t>(digit - '0');
}

} // namespace zorvik
