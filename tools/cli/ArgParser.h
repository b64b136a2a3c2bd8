// Command-line arguments of one zorvik-cli command: options with or without a value, and
// positional arguments.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zorvik::cli {

/// An option a command accepts, named without its leading "--", and its one-letter form
/// ('\0' for none).
struct CommandOption {
    std::string_view name;
    bool takesValue = true;
    char letter = '\0';
};

struct ParsedArgs {
    std::vector<std::string> positionals;
    std::map<std::string, std::string, std::less<>> options;
    bool help = false; ///< --help or -h was given

    bool has(std::string_view name) const { return options.find(name) != options.end(); }
    std::optional<std::string> value(std::string_view name) const;
};

/// Parses the arguments that follow the command name. Options are written "--name value",
/// "--name=value", or with their letter "-x value" and "-xvalue"; "--help" and "-h" are always
/// accepted; "--" ends the options, and "-" alone is a positional argument. On a mistake
/// returns false with a one-line `error` (unknown option, missing value, value for a flag,
/// option given twice).
bool parseArgs(std::span<const std::string> args, std::span<const CommandOption> accepted,
               ParsedArgs& out, std::string& error);

/// A whole number from `min` to `max`, the whole text and nothing else.
std::optional<long long> parseWholeNumber(std::string_view text, long long min, long long max);
/// A finite number above zero, the whole text and nothing else (for example 2, 0.5, 1e1).
std::optional<double> parsePositiveNumber(std::string_view text);

} // namespace zorvik::cli
