// cInifile: properties and operations over the profile engine (the window-position members
// are in cInifileFormPosition.cpp).
#include "storage/cInifile.h"

#include "storage/ProfileFile.h"
#include "storage/VbConvert.h"

#include <algorithm>
#include <span>

namespace zorvik {

namespace {

constexpr std::size_t kValueBuffer = 255;
constexpr std::size_t kListBuffer = 8192;

// Cuts a NUL-separated list into its names. A trailing piece without its NUL (a list cut short
// by the buffer) is not a name.
std::vector<std::string> splitAtNuls(const std::string& list, bool keepEmpty) {
    std::vector<std::string> names;
    std::size_t pos = 0;
    for (;;) {
        const std::size_t nul = list.find('\0', pos);
        if (nul == std::string::npos)
            break;
        if (keepEmpty || nul > pos)
            names.push_back(list.substr(pos, nul - pos));
        pos = nul + 1;
    }
    return names;
}

void toOneBased(const std::vector<std::string>& names, std::vector<std::string>& array,
                std::int32_t& count) {
    array.clear();
    count = 0;
    if (names.empty())
        return;
    array.reserve(names.size() + 1);
    array.emplace_back();
    for (const std::string& name : names) {
        array.push_back(name);
        ++count;
    }
}

} // namespace

std::string cInifile::Value() const {
    std::string buffer(kValueBuffer, ' ');
    const std::uint32_t n = ProfileFile::getPrivateProfileString(sSection, sKey, sDefault,
                                                                 std::span<char>(buffer), sPath);
    buffer.resize(n);
    return buffer;
}

void cInifile::setValue(std::string& value) {
    value.erase(std::remove(value.begin(), value.end(), '\0'), value.end());
    write(true, &value);
}

void cInifile::DeleteKey() {
    write(true, nullptr);
}

void cInifile::DeleteSection() {
    write(false, nullptr);
}

std::string cInifile::INISection() const {
    return readList(false);
}

void cInifile::setINISection(const std::string& value) {
    write(false, &value);
}

std::string cInifile::Sections() const {
    return readList(true);
}

void cInifile::EnumerateCurrentSection(std::vector<std::string>& sKey, std::int32_t& iCount) const {
    toOneBased(splitAtNuls(INISection(), true), sKey, iCount);
}

void cInifile::EnumerateAllSections(std::vector<std::string>& sSections,
                                    std::int32_t& iCount) const {
    toOneBased(splitAtNuls(Sections(), false), sSections, iCount);
}

std::int32_t cInifile::CLngDefault(const std::string& sString, std::int32_t lDefault) const {
    try {
        return VbConvert::textToLong(sString);
    } catch (const ConversionError&) {
        return lDefault;
    }
}

std::string cInifile::readList(bool allSections) const {
    std::string buffer(kListBuffer, ' ');
    const OptionalText section = allSections ? OptionalText() : OptionalText(sSection);
    const std::uint32_t n = ProfileFile::getPrivateProfileString(section, std::nullopt, sDefault,
                                                                 std::span<char>(buffer), sPath);
    buffer.resize(n);
    return buffer;
}

void cInifile::write(bool withKey, const std::string* value) {
    lLastReturnCode = ProfileFile::writePrivateProfileString(
        sSection, withKey ? OptionalText(sKey) : OptionalText(),
        value ? OptionalText(*value) : OptionalText(), sPath);
}

} // namespace zorvik
