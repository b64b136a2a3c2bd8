// The profile engine with bad or unusual input: missing and empty files, binary garbage, a
// 10 MB file and a 100 000-character line.
#include "IniTestSupport.h"

#include "storage/cInifile.h"

#include <chrono>
#include <random>

using namespace zorvik;
using namespace zorvik::testing;

namespace {

class ProfileRobustness : public ::testing::Test {
protected:
    void SetUp() override { path = dir.file("test.ini"); }

    TempDir dir;
    std::string path;
};

using Clock = std::chrono::steady_clock;
constexpr auto kReasonable = std::chrono::seconds(3);

TEST_F(ProfileRobustness, MissingFileReadsAsDefaultEverywhere) {
    EXPECT_EQ(readValue("A", "a", path, "dflt"), "dflt");
    EXPECT_EQ(readProfile("A", std::nullopt, std::nullopt, 16, path).count, 0u);
    EXPECT_EQ(readProfile(std::nullopt, std::nullopt, std::nullopt, 16, path).count, 0u);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(ProfileRobustness, EmptyFileReadsAsDefaultAndTakesAFirstWrite) {
    writeBytes(path, "");
    EXPECT_EQ(readValue("A", "a", path, "dflt"), "dflt");
    const Read sections = readProfile(std::nullopt, std::nullopt, std::nullopt, 4, path);
    EXPECT_EQ(sections.count, 0u);
    EXPECT_EQ(sections.head(2), "\0\0"s);
    EXPECT_NE(ProfileFile::writePrivateProfileString("A", "a", "1", path), 0);
    EXPECT_EQ(readBytes(path), "[A]\r\na=1\r\n");
}

TEST_F(ProfileRobustness, SectionWithoutKeysGivesAnEmptyList) {
    writeBytes(path, "[A]\r\n[B]\r\n");
    const Read keys = readProfile("A", std::nullopt, "dflt", 4, path);
    EXPECT_EQ(keys.count, 0u);
    EXPECT_EQ(keys.head(2), "\0\0"s);
}

TEST_F(ProfileRobustness, BinaryGarbageIsReadWithoutHarmAndKeptByAWrite) {
    std::mt19937 random(20240611);
    std::string garbage(1 << 20, '\0');
    // Plenty of the bytes that mean something in a profile file.
    const char meaningful[] = {'\0', '\r', '\n', '[', ']', '=', ';', '"', '\'', ' ', '\t'};
    for (char& c : garbage) {
        const unsigned r = random();
        c = (r % 4 == 0) ? meaningful[(r >> 8) % sizeof meaningful] : static_cast<char>(r >> 16);
    }
    writeBytes(path, garbage);

    const Read sections = readProfile(std::nullopt, std::nullopt, std::nullopt, 1 << 16, path);
    EXPECT_LE(sections.count, (1u << 16) - 2);
    (void)readValue("A", "=", path, "dflt");
    cInifile ini;
    ini.setPath(path);
    ini.setSection("ZorvikTest");
    ini.setKey("k");
    EXPECT_EQ(ini.Value(), "");
    std::string text = "v";
    ini.setValue(text);
    ASSERT_TRUE(ini.Success());
    EXPECT_EQ(ini.Value(), "v");

    const std::string after = readBytes(path);
    ASSERT_GT(after.size(), garbage.size());
    EXPECT_EQ(after.substr(0, garbage.size()), garbage);
    const std::string tail = after.substr(garbage.size());
    EXPECT_TRUE(tail.ends_with("[ZorvikTest]\r\nk=v\r\n") ||
                tail.ends_with("[ZorvikTest]\nk=v\n") || tail.ends_with("[ZorvikTest]\rk=v\r"))
        << tail;
}

TEST_F(ProfileRobustness, TenMegabyteFileIsReadAndUpdatedQuickly) {
    std::string big;
    big.reserve(10'500'000);
    int n = 0;
    while (big.size() < 10'000'000) {
        big += "[Section" + std::to_string(n) + "]\r\n";
        for (int k = 0; k < 20; ++k)
            big += "Key" + std::to_string(k) + " = some value of section " + std::to_string(n) +
                   "\r\n";
        ++n;
    }
    big += "[Last]\r\nTarget=old\r\n";
    writeBytes(path, big);

    auto start = Clock::now();
    EXPECT_EQ(readValue("last", "target", path), "old");
    EXPECT_EQ(readValue("Section" + std::to_string(n / 2), "Key19", path),
              "some value of section " + std::to_string(n / 2));
    EXPECT_LT(Clock::now() - start, kReasonable);

    start = Clock::now();
    const Read sections = readProfile(std::nullopt, std::nullopt, std::nullopt, 8192, path);
    EXPECT_EQ(sections.count, 8190u);
    EXPECT_LT(Clock::now() - start, kReasonable);

    start = Clock::now();
    EXPECT_NE(ProfileFile::writePrivateProfileString("Last", "Target", "new", path), 0);
    EXPECT_NE(ProfileFile::writePrivateProfileString("Section0", "Added", "1", path), 0);
    EXPECT_LT(Clock::now() - start, kReasonable);

    std::string expected = big;
    expected.replace(expected.size() - 5, 3, "new");
    expected.insert(expected.find("[Section1]\r\n"), "Added=1\r\n");
    EXPECT_TRUE(readBytes(path) == expected);
}

TEST_F(ProfileRobustness, HundredThousandCharacterLinesAreHandled) {
    const std::string longValue(100000, 'v');
    const std::string longText(100000, 't');
    writeBytes(path, "[A]\r\n" + longText + "\r\nlong=" + longValue + "\r\nshort=1\r\n");

    EXPECT_EQ(readValue("A", "long", path, std::nullopt, 200000),
              std::string(ProfileFile::kMaxValueLength, 'v'));
    EXPECT_EQ(readValue("A", "short", path), "1");
    EXPECT_EQ(readValue("A", longText, path, "dflt"), "dflt");

    cInifile ini;
    ini.setPath(path);
    ini.setSection("A");
    ini.setKey("long");
    EXPECT_EQ(ini.Value(), std::string(254, 'v'));

    std::string shorter = "now short";
    ini.setValue(shorter);
    EXPECT_EQ(readBytes(path), "[A]\r\n" + longText + "\r\nlong=now short\r\nshort=1\r\n");
}

TEST_F(ProfileRobustness, RandomSmallFilesAlwaysReadBackWhatWasJustWritten) {
    std::mt19937 random(7);
    const std::string alphabet = "[]=; \t\r\n\"'abAB\0";
    const auto pick = [&](const std::string& from, std::size_t length) {
        std::string text;
        for (std::size_t i = 0; i < length; ++i)
            text += from[random() % from.size()];
        return text;
    };
    for (int round = 0; round < 100; ++round) {
        writeBytes(path, pick(alphabet, random() % 40));
        const std::string section = pick("abAB", 1 + random() % 2);
        const std::string key = pick("abAB", 1 + random() % 2);
        const std::string value = pick("xyz", 1 + random() % 3);
        (void)readProfile(std::nullopt, std::nullopt, std::nullopt, 1 + random() % 16, path);
        (void)readProfile(section, std::nullopt, std::nullopt, 1 + random() % 16, path);
        ASSERT_NE(ProfileFile::writePrivateProfileString(section, key, value, path), 0);
        ASSERT_EQ(readValue(section, key, path), value) << round;
        ASSERT_NE(
            ProfileFile::writePrivateProfileString(section, pick("ab", 1), std::nullopt, path), 0);
        ASSERT_NE(ProfileFile::writePrivateProfileString(pick("ab", 1), std::nullopt, "", path), 0);
    }
}

TEST_F(ProfileRobustness, NonNumericValuesAreJustText) {
    writeBytes(path, "[SETTINGS]\r\nHscaleindex=abc\r\nVscaleindex=\x01\x02\x7f\r\n");
    EXPECT_EQ(readValue("SETTINGS", "Hscaleindex", path), "abc");
    EXPECT_EQ(readValue("SETTINGS", "Vscaleindex", path), "\x01\x02\x7f");
}

} // namespace
