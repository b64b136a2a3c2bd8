// The version record built into the program and the splash texts made from it.
#include "support/VersionRecord.h"

#include <gtest/gtest.h>
#include <string>

namespace zorvik::test {
namespace {

TEST(VersionRecord, CarriesTheProgramTitleAndVersionOfThisBuild) {
    const VersionRecord record = programVersionRecord();
    EXPECT_EQ(record.title, "Zorvik");
    // The build's project version, handed to this test by the build.
    EXPECT_EQ(std::to_string(record.major) + "." + std::to_string(record.minor) + "." +
                  std::to_string(record.revision),
              ZORVIK_PROJECT_VERSION);
    EXPECT_EQ(record.companyName, "Zorvik Instruments");
    EXPECT_EQ(record.legalCopyright, "Copyright (C) 2026 Zorvik Instruments");
    EXPECT_EQ(record.legalTrademarks, "Zorvik is a trademark of Zorvik Instruments");
    EXPECT_EQ(record.fileDescription, "Front panel for the Zorvik hand-held probe oscilloscope");
}

TEST(VersionRecord, VersionCaptionNamesAll3NumbersAnd32Bit) {
    VersionRecord record;
    record.major = 2;
    record.minor = 10;
    record.revision = 7;
    EXPECT_EQ(versionCaption(record), "Version 2.10.7 (32-bit)");
}

TEST(VersionRecord, CompanyCaptionPrefixesTheCompany) {
    VersionRecord record;
    record.companyName = "Acme";
    EXPECT_EQ(companyCaption(record), "A product of Acme");
}

TEST(VersionRecord, EmptyCompanyNeverGetsTheProductOfPrefix) {
    EXPECT_EQ(companyCaption(VersionRecord{}), "");
}

TEST(VersionRecord, PathCaptionEndsWithABlank) {
    EXPECT_EQ(programPathCaption("/opt/zorvik", '/', "zorvik"), "/opt/zorvik/zorvik ");
    EXPECT_EQ(programPathCaption("C:\\Zorvik", '\\', "zorvik"), "C:\\Zorvik\\zorvik ");
}

} // namespace
} // namespace zorvik::test
