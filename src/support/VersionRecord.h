// The program's version record (title, company, version numbers, legal texts, description)
// and the texts the splash screen and About box make of it.
#pragma once

#include <string>

namespace zorvik {

struct VersionRecord {
    std::string title;
    int major = 0;
    int minor = 0;
    int revision = 0;
    std::string companyName;
    std::string legalCopyright;
    std::string legalTrademarks;
    std::string fileDescription;
};

/// The record this build of the program carries.
VersionRecord programVersionRecord();

/// "Version " + major.minor.revision + " (32-bit)".
std::string versionCaption(const VersionRecord& record);

/// "A product of " + company, or an empty text when the record names no company.
std::string companyCaption(const VersionRecord& record);

/// Program folder, separator, program file name without extension and a trailing blank.
std::string programPathCaption(const std::string& folder, char separator,
                               const std::string& baseName);

} // namespace zorvik
