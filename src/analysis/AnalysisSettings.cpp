// The [ANALYSIS] section of the settings file.
#include "analysis/AnalysisSettings.h"

#include "storage/ProfileDocument.h"
#include "storage/cInifile.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace zorvik {

std::optional<std::string> AnalysisSettings::text(const std::string& key) const {
    if (!kept())
        return std::nullopt;
    cInifile ini;
    ini.setPath(where_.readPath().string());
    ini.setSection(kSection);
    ini.setKey(key);
    // A default no value can be: the key is missing when it comes back.
    const std::string missing = std::string("\x01missing\x01");
    ini.setDefault(missing);
    std::string value = ini.Value();
    if (value == missing)
        return std::nullopt;
    return value;
}

long AnalysisSettings::number(const std::string& key, long min, long max, long fallback) const {
    const std::optional<std::string> t = text(key);
    if (!t)
        return fallback;
    long v = 0;
    const char* end = t->data() + t->size();
    const auto r = std::from_chars(t->data(), end, v);
    if (r.ec != std::errc() || r.ptr != end || v < min || v > max)
        return fallback;
    return v;
}

double AnalysisSettings::real(const std::string& key, double fallback) const {
    const std::optional<std::string> t = text(key);
    if (!t)
        return fallback;
    double v = 0.0;
    const char* end = t->data() + t->size();
    const auto r = std::from_chars(t->data(), end, v);
    if (r.ec != std::errc() || r.ptr != end || !std::isfinite(v))
        return fallback;
    return v;
}

bool AnalysisSettings::write(const std::vector<std::pair<std::string, std::string>>& values) {
    if (!kept())
        return true;
    // The per-user copy starts as the file beside the program, as the panel's own save does.
    std::error_code ec;
    const bool firstCopy = !where_.original.empty() && !std::filesystem::exists(where_.file, ec) &&
                           std::filesystem::exists(where_.original, ec);
    std::optional<ProfileDocument> document =
        ProfileDocument::read(firstCopy ? where_.original : where_.file);
    if (!document)
        return false;
    const std::string before = document->bytes();
    cInifile ini;
    ini.setSection(kSection);
    for (const auto& [key, value] : values) {
        ini.setKey(key);
        document->write(ini, value);
    }
    if (document->bytes() == before && !firstCopy)
        return true;
    if (!where_.original.empty())
        std::filesystem::create_directories(where_.file.parent_path(), ec);
    return document->commit(where_.file);
}

} // namespace zorvik
