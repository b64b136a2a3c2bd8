// Parsing and checking of zorvik-probe's command line, and its help text.
#include "probe/ProbeOptions.h"

#include "probe/DemoTour.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace zorvik {

namespace {

struct OptionInfo {
    std::string_view name;
    std::string_view value; ///< empty: a switch without value
    std::string_view text;
};

// The order of the help text.
constexpr OptionInfo kOptions[] = {
    {"--shape", "NAME", "signal: sine, square, triangle, noise or dc (default: sine)"},
    {"--freq", "HZ", "frequency, above 0 (default: 1000)"},
    {"--amplitude", "V", "peak amplitude; a dc signal ignores it (default: 1)"},
    {"--offset", "V", "offset; the level of a dc signal (default: 0)"},
    {"--range", "CODE", "input range 0x00 (1 V), 0x04 (10 V) or 0x08 (100 V) (default: 0x04)"},
    {"--coupling", "NAME", "gnd, ac or dc (default: dc)"},
    {"--timebase", "CODE", "time-base code 0..10 (default: 6, 20Ks/s)"},
    {"--trigger", "MODE", "fr, in+, in-, ex+, ex-, or a byte sent as it stands (default: in+)"},
    {"--level", "CODE", "trigger-level code 0, 4, 8, 16, 32, 64, or any byte (default: 16)"},
    {"--dvm", "B100,B10,B1,FLAGS",
     "voltmeter bytes sent as they stand (default: the mean of the input)"},
    {"--waiting", "N", "waiting markers between frames (default: 0)"},
    {"--unpaced", "", "as fast as the reader takes the bytes (default: 1920 bytes/s)"},
    {"--drop", "P", "lose each byte with probability P, 0..1 (default: 0)"},
    {"--stall-after", "K", "after K frames, stop in the middle of the next (default: none)"},
    {"--stall-ms", "D", "length of that stall in milliseconds (default: 500)"},
    {"--garbage", "N", "inject N random bytes after every K frames (default: 0)"},
    {"--garbage-every", "K", "the K of --garbage (default: 1)"},
    {"--garbage-only", "", "send random bytes only (default: off)"},
    {"--disconnect-after", "N", "remove the device after N frames (default: never)"},
    {"--tour", "",
     "play the tour of zorvik --demo: sine, square, triangle and more on the 100 V range at "
     "20Ms/s, changing every 5 s (default: off)"},
    {"--replay", "FILE", "send the bytes of FILE instead of frames (default: none)"},
    {"--loop", "", "with --replay: repeat the file without end (default: off)"},
    {"--frames", "N", "stop after N frames (default: run until interrupted)"},
    {"--seed", "S", "seed of the noise and of the faults (default: 1)"},
    {"--link", "PATH", "also make a symbolic link to the device at PATH (default: none)"},
    {"--record", "FILE", "also write every byte sent to FILE (default: none)"},
    {"--help", "", "show this help and exit"},
    {"--version", "", "show the version and exit"},
};

const OptionInfo* findOption(std::string_view name) {
    for (const auto& option : kOptions) {
        if (option.name == name)
            return &option;
    }
    return nullptr;
}

std::optional<double> toNumber(std::string_view text) {
    double value = 0.0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<std::uint64_t> toCount(std::string_view text) {
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    }
    std::uint64_t value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (text.empty() || ec != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<std::uint8_t> toByte(std::string_view text) {
    const auto value = toCount(text);
    if (!value || *value > 255)
        return std::nullopt;
    return static_cast<std::uint8_t>(*value);
}

// Applies one option; returns an error text, empty when the value is good.
std::string apply(ProbeCommand& c, std::string_view name, std::string_view v) {
    std::string quoted(1, '\'');
    quoted += v;
    quoted += '\'';
    auto& s = c.settings;
    auto& o = c.stream;
    if (name == "--shape") {
        const auto shape = shapeFromName(v);
        if (!shape)
            return "--shape: unknown shape " + quoted + " (sine, square, triangle, noise, dc)";
        s.signal.shape = *shape;
    } else if (name == "--freq") {
        const auto value = toNumber(v);
        if (!value || *value <= 0.0)
            return "--freq: " + quoted + " is not a frequency above 0";
        s.signal.frequency = *value;
    } else if (name == "--amplitude") {
        const auto value = toNumber(v);
        if (!value || *value < 0.0)
            return "--amplitude: " + quoted + " is not a voltage of 0 or more";
        s.signal.amplitude = *value;
    } else if (name == "--offset") {
        const auto value = toNumber(v);
        if (!value)
            return "--offset: " + quoted + " is not a voltage";
        s.signal.offset = *value;
    } else if (name == "--range") {
        const auto value = toByte(v);
        if (!value || (*value != 0x00 && *value != 0x04 && *value != 0x08))
            return "--range: " + quoted + " is not 0x00, 0x04 or 0x08";
        s.range = *value;
    } else if (name == "--coupling") {
        const auto coupling = couplingFromName(v);
        if (!coupling)
            return "--coupling: unknown coupling " + quoted + " (gnd, ac, dc)";
        s.coupling = *coupling;
    } else if (name == "--timebase") {
        const auto value = toByte(v);
        if (!value || *value > 10)
            return "--timebase: " + quoted + " is not a time-base code 0..10";
        s.timebase = *value;
    } else if (name == "--trigger") {
        auto value = triggerByteFromName(v);
        if (!value)
            value = toByte(v);
        if (!value)
            return "--trigger: " + quoted + " is neither fr, in+, in-, ex+, ex- nor a byte";
        s.trigger = *value;
    } else if (name == "--level") {
        const auto value = toByte(v);
        if (!value)
            return "--level: " + quoted + " is not a byte";
        s.level = *value;
    } else if (name == "--dvm") {
        std::array<std::uint8_t, 4> bytes{};
        std::string_view rest = v;
        for (std::size_t i = 0; i < 4; ++i) {
            const auto comma = rest.find(',');
            const auto value = toByte(rest.substr(0, comma));
            if (!value || (i < 3) == (comma == std::string_view::npos))
                return "--dvm: " + quoted + " is not four bytes B100,B10,B1,FLAGS";
            bytes[i] = *value;
            rest = i < 3 ? rest.substr(comma + 1) : std::string_view();
        }
        s.dvm = bytes;
    } else if (name == "--drop") {
        const auto value = toNumber(v);
        if (!value || *value < 0.0 || *value > 1.0)
            return "--drop: " + quoted + " is not a probability 0..1";
        o.dropProbability = *value;
    } else if (name == "--replay" || name == "--link" || name == "--record") {
        if (v.empty())
            return std::string(name) + ": the path is empty";
        (name == "--replay" ? c.replayPath : name == "--link" ? c.linkPath : c.recordPath) = v;
    } else {
        // The remaining options take a count.
        const auto value = toCount(v);
        const bool atLeastOne = name == "--garbage-every";
        if (!value || (atLeastOne && *value == 0))
            return std::string(name) + ": " + quoted + " is not a whole number" +
                   (atLeastOne ? " of 1 or more" : " of 0 or more");
        const std::size_t size = static_cast<std::size_t>(*value);
        if (name == "--waiting")
            o.waitingBetween = size;
        else if (name == "--stall-after")
            o.stallAfter = *value;
        else if (name == "--stall-ms")
            o.stallFor = std::chrono::milliseconds(static_cast<std::int64_t>(
                std::min<std::uint64_t>(*value, std::numeric_limits<std::int32_t>::max())));
        else if (name == "--garbage")
            o.garbageBytes = size;
        else if (name == "--garbage-every")
            o.garbageEvery = *value;
        else if (name == "--disconnect-after")
            o.disconnectAfter = *value;
        else if (name == "--frames")
            o.frames = *value;
        else if (name == "--seed")
            o.seed = *value;
    }
    return {};
}

} // namespace

ProbeCommandResult parseProbeCommand(const std::vector<std::string>& args) {
    ProbeCommand command;
    std::vector<std::string_view> seen;
    for (std::size_t i = 0; i < args.size(); ++i) {
        std::string_view arg = args[i];
        std::optional<std::string_view> value;
        if (const auto eq = arg.find('='); arg.starts_with("--") && eq != std::string_view::npos) {
            value = arg.substr(eq + 1);
            arg = arg.substr(0, eq);
        }
        const OptionInfo* option = findOption(arg);
        if (!option)
            return {std::nullopt, (arg.starts_with("-") ? "unknown option '" : "unexpected '") +
                                      std::string(arg) + "' (see --help)"};
        seen.push_back(option->name);
        if (option->value.empty()) {
            if (value)
                return {std::nullopt, std::string(arg) + " takes no value"};
            if (arg == "--unpaced")
                command.paced = false;
            else if (arg == "--garbage-only")
                command.stream.garbageOnly = true;
            else if (arg == "--loop")
                command.loop = true;
            else if (arg == "--tour")
                command.stream.program = demoSettings;
            else if (arg == "--help")
                command.help = true;
            else if (arg == "--version")
                command.version = true;
            continue;
        }
        if (!value) {
            if (i + 1 == args.size())
                return {std::nullopt,
                        std::string(arg) + " needs a value " + std::string(option->value)};
            value = args[++i];
        }
        if (auto error = apply(command, arg, *value); !error.empty())
            return {std::nullopt, error};
    }

    auto given = [&](std::string_view name) {
        return std::find(seen.begin(), seen.end(), name) != seen.end();
    };
    if (command.help || command.version)
        return {command, {}};
    if (given("--loop") && !given("--replay"))
        return {std::nullopt, "--loop needs --replay"};
    if (given("--tour")) {
        for (const char* signal :
             {"--shape", "--freq", "--amplitude", "--offset", "--range", "--coupling", "--timebase",
              "--trigger", "--level", "--dvm", "--replay", "--garbage-only"}) {
            if (given(signal))
                return {std::nullopt, "--tour and " + std::string(signal) + " exclude each other"};
        }
        command.settings = demoSettings(0);
    }
    if (given("--garbage-only") && given("--replay"))
        return {std::nullopt, "--garbage-only and --replay exclude each other"};
    if (given("--stall-ms") && !given("--stall-after"))
        return {std::nullopt, "--stall-ms needs --stall-after"};
    if (given("--garbage-every") && !given("--garbage"))
        return {std::nullopt, "--garbage-every needs --garbage"};
    return {command, {}};
}

std::string probeHelpText() {
    std::string text =
        "Usage: zorvik-probe [options]\n"
        "A virtual probe oscilloscope on a pseudo-terminal. Prints the device to open as the\n"
        "first line, then sends frames until interrupted or until a finite run ends.\n"
        "Options take their value as the next argument or after '='.\n\n";
    for (const auto& option : kOptions) {
        std::string left(2, ' ');
        left += option.name;
        if (!option.value.empty()) {
            left += ' ';
            left += option.value;
        }
        if (left.size() < 24) {
            left.resize(24, ' ');
        } else {
            left += '\n';
            left.append(24, ' ');
        }
        text += left;
        text += option.text;
        text += '\n';
    }
    text += "\nExit status: 0 done, 1 the device or a file failed, 2 bad options.\n";
    return text;
}

} // namespace zorvik
