// The program's version record and the splash screen's texts made from it.
#include "support/VersionRecord.h"

#include "support/VersionInfo.h"

namespace zorvik {

VersionRecord programVersionRecord() {
    VersionRecord record;
    record.title = buildinfo::kTitle;
    record.major = buildinfo::kVersionMajor;
    record.minor = buildinfo::kVersionMinor;
    record.revision = buildinfo::kVersionRevision;
    record.companyName = buildinfo::kCompanyName;
    record.legalCopyright = buildinfo::kLegalCopyright;
    record.legalTrademarks = buildinfo::kLegalTrademarks;
    record.fileDescription = buildinfo::kFileDescription;
    return record;
}

std::string versionCaption(const VersionRecord& record) {
    // The " (32-bit)" suffix is part of the program's fixed version text.
    return "Version " + std::to_string(record.major) + "." + std::to_string(record.minor) + "." +
           std::to_string(record.revision) + " (32-bit)";
}

std::string companyCaption(const VersionRecord& record) {
    if (record.companyName.empty())
        return {};
    return "A product of " + record.companyName;
}

std::string programPathCaption(const std::string& folder, char separator,
                               const std::string& baseName) {
    // The trailing blank belongs to the text.
    return folder + separator + baseName + " ";
}

} // namespace zorvik
