// Command-line arguments of one zorvik-cli command: options with or without a value, and
// positional arguments.
#include "ArgParser.h"

#include <charconv>
#include <cmath>

namespace zorvik::cli {

std::optional<std::string> ParsedArgs::value(std::string_view name) const {
    const auto it = options.find(name);
    if (it == options.end())
        return std::nullopt;
    return it->second;
}

bool parseArgs(std::span<const std::string> args, std::span<const CommandOption> accepted,
               ParsedArgs& out, std::string& error) {
    bool optionsEnded = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (optionsEnded || arg == "-" || !arg.starts_with("-")) {
            out.positionals.push_back(arg);
            continue;
        }
        if (arg == "--") {
            optionsEnded = true;
            continue;
        }
        if (arg == "--help" || arg == "-h") {
            out.help = true;
            continue;
        }
        std::string name;
        std::optional<std::string> value;
        const CommandOption* option = nullptr;
        if (!arg.starts_with("--")) {
            // "-x" or "-xVALUE".
            for (const CommandOption& o : accepted) {
                if (o.letter != '\0' && o.letter == arg[1])
                    option = &o;
            }
            if (option == nullptr || (arg.size() > 2 && !option->takesValue)) {
                error = "unknown option " + arg;
                return false;
            }
            name = option->name;
            if (arg.size() > 2)
                value = arg.substr(2);
        } else {
            name = arg.substr(2);
            if (const auto eq = name.find('='); eq != std::string::npos) {
                value = name.substr(eq + 1);
                name.resize(eq);
            }
            for (const CommandOption& o : accepted) {
                if (o.name == name)
                    option = &o;
            }
            if (option == nullptr) {
                error = "unknown option --" + name;
                return false;
            }
        }
        if (out.has(name)) {
            error = "option --" + name + " given twice";
            return false;
        }
        if (!option->takesValue) {
            if (value) {
                error = "option --" + name + " takes no value";
                return false;
            }
            out.options.emplace(name, std::string());
            continue;
        }
        if (!value) {
            if (i + 1 >= args.size()) {
                error = "option --" + name + " needs a value";
                return false;
            }
            value = args[++i];
        }
        out.options.emplace(name, *value);
    }
    return true;
}

std::optional<long long> parseWholeNumber(std::string_view text, long long min, long long max) {
    long long value = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (text.empty() || result.ec != std::errc() || result.ptr != end || value < min || value > max)
        return std::nullopt;
    return value;
}

std::optional<double> parsePositiveNumber(std::string_view text) {
    double value = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (text.empty() || result.ec != std::errc() || result.ptr != end || !std::isfinite(value) ||
        value <= 0)
        return std::nullopt;
    return value;
}

} // namespace zorvik::cli
