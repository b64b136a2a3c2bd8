// How the profile engine reads the lines of a file: names, blanks, quotes, comments,
// headers, duplicates, line endings, long values and bytes outside ASCII.
#include "IniTestSupport.h"

using namespace zorvik;
using namespace zorvik::testing;

namespace {

class ProfileParse : public ::testing::Test {
protected:
    void SetUp() override { path = dir.file("test.ini"); }
    void file(const std::string& bytes) { writeBytes(path, bytes); }
    std::string value(const std::string& section, const std::string& key) {
        return readValue(section, key, path, "<default>", 70000);
    }

    TempDir dir;
    std::string path;
};

TEST_F(ProfileParse, SectionAndKeyNamesMatchIgnoringCaseValuesKeepTheirCase) {
    file("[Settings]\r\nHscaleIndex=MixedCase\r\n");
    EXPECT_EQ(value("SETTINGS", "hscaleindex"), "MixedCase");
    EXPECT_EQ(value("settings", "HSCALEINDEX"), "MixedCase");
}

TEST_F(ProfileParse, BlanksAroundNamesEqualsAndValuesAreIgnored) {
    file(" \t[ \tApp\t ] \r\n \t key \t=\t value with  inner  blanks \t \r\n");
    EXPECT_EQ(value("App", "key"), "value with  inner  blanks");
}

TEST_F(ProfileParse, ArgumentsLoseOnlySpacesNotTabs) {
    file("[App]\r\nkey=v\r\n");
    EXPECT_EQ(value("  App  ", "  key  "), "v");
    EXPECT_EQ(value("\tApp", "key"), "<default>");
    EXPECT_EQ(value("App", "key\t"), "<default>");
}

TEST_F(ProfileParse, LineSplitsAtItsFirstEquals) {
    file("[App]\r\nkey=a=b=c\r\n=empty name\r\n");
    EXPECT_EQ(value("App", "key"), "a=b=c");
    EXPECT_EQ(value("App", ""), "empty name");
    EXPECT_EQ(value("App", "   "), "empty name");
}

TEST_F(ProfileParse, OneOuterPairOfMatchingQuotesIsRemoved) {
    file("[App]\r\n"
         "dq=\"double\"\r\n"
         "sq='single'\r\n"
         "twice=''x''\r\n"
         "mixed=\"x'\r\n"
         "lone=\"\r\n"
         "pair=\"\"\r\n"
         "inner=a\"b\"\r\n"
         "blanks= \" padded \" \r\n");
    EXPECT_EQ(value("App", "dq"), "double");
    EXPECT_EQ(value("App", "sq"), "single");
    EXPECT_EQ(value("App", "twice"), "'x'");
    EXPECT_EQ(value("App", "mixed"), "\"x'");
    EXPECT_EQ(value("App", "lone"), "\"");
    EXPECT_EQ(value("App", "pair"), "");
    EXPECT_EQ(value("App", "inner"), "a\"b\"");
    EXPECT_EQ(value("App", "blanks"), " padded ");
}

TEST_F(ProfileParse, QuotesInSectionAndKeyNamesAreNeverRemoved) {
    file("[\"App\"]\r\n'key'=v\r\n");
    EXPECT_EQ(value("\"App\"", "'key'"), "v");
    EXPECT_EQ(value("App", "key"), "<default>");
}

TEST_F(ProfileParse, SemicolonFirstMakesACommentElsewhereItIsText) {
    file("[App]\r\n;key=hidden\r\n  ; other=hidden\r\nvalue=a;b\r\n#hash=shown\r\n");
    EXPECT_EQ(value("App", ";key"), "<default>");
    EXPECT_EQ(value("App", "key"), "<default>");
    EXPECT_EQ(value("App", "other"), "<default>");
    EXPECT_EQ(value("App", "value"), "a;b");
    EXPECT_EQ(value("App", "#hash"), "shown");
    const Read list = readProfile("App", std::nullopt, std::nullopt, 64, path);
    EXPECT_EQ(list.head(13), "value\0#hash\0\0"s);
}

TEST_F(ProfileParse, HeaderNameEndsAtFirstBracketRestOfLineIgnored) {
    file("[s]k=v\r\nafter=1\r\n[t] ; note ] more\r\nx=2\r\n");
    EXPECT_EQ(value("s", "k"), "<default>");
    EXPECT_EQ(value("s", "after"), "1");
    EXPECT_EQ(value("t", "x"), "2");
}

TEST_F(ProfileParse, HeaderWithoutClosingBracketIsTolerated) {
    file("[sec   \r\nk=v\r\n");
    EXPECT_EQ(value("sec", "k"), "v");
}

TEST_F(ProfileParse, NameFollowedByBracketIsNotAHeader) {
    file("[real]\r\nsec]\r\nk=v\r\n");
    EXPECT_EQ(value("real", "k"), "v");
    EXPECT_EQ(value("sec", "k"), "<default>");
}

TEST_F(ProfileParse, EmptyBracketsAreASectionNamedEmpty) {
    file("[]\r\nk=v\r\n");
    EXPECT_EQ(value("", "k"), "v");
    EXPECT_EQ(value("  ", "k"), "v");
    const Read list = readProfile(std::nullopt, std::nullopt, std::nullopt, 16, path);
    EXPECT_EQ(list.count, 1u);
    EXPECT_EQ(list.head(2), "\0\0"s);
}

TEST_F(ProfileParse, LinesBeforeTheFirstHeaderCannotBeRead) {
    file("orphan=1\r\n[App]\r\nk=v\r\n");
    EXPECT_EQ(value("", "orphan"), "<default>");
    EXPECT_EQ(value("App", "orphan"), "<default>");
    EXPECT_EQ(value("App", "k"), "v");
}

TEST_F(ProfileParse, LineWithoutEqualsIsNeverAKey) {
    file("[App]\r\nlonely\r\n");
    EXPECT_EQ(value("App", "lonely"), "<default>");
}

TEST_F(ProfileParse, FirstDuplicateKeyWins) {
    file("[App]\r\nk=first\r\nK=second\r\n");
    EXPECT_EQ(value("App", "k"), "first");
}

TEST_F(ProfileParse, OnlyTheFirstOccurrenceOfASectionIsSearched) {
    file("[App]\r\na=1\r\n[Other]\r\n[APP]\r\nb=2\r\n");
    EXPECT_EQ(value("App", "a"), "1");
    EXPECT_EQ(value("App", "b"), "<default>");
    const Read keys = readProfile("App", std::nullopt, std::nullopt, 16, path);
    EXPECT_EQ(keys.count, 2u);
}

TEST_F(ProfileParse, CrlfLfAndLoneCrAllEndALineBlankLinesIgnored) {
    file("[A]\r\na=1\r\n\r\n[B]\nb=2\n\n[C]\rc=3\r\r[D]\n\rd=4");
    EXPECT_EQ(value("A", "a"), "1");
    EXPECT_EQ(value("B", "b"), "2");
    EXPECT_EQ(value("C", "c"), "3");
    EXPECT_EQ(value("D", "d"), "4");
    const Read list = readProfile(std::nullopt, std::nullopt, std::nullopt, 16, path);
    EXPECT_EQ(list.head(9), "A\0B\0C\0D\0\0"s);
}

TEST_F(ProfileParse, ValuesAreReadInFullUpTo65535Characters) {
    std::string full(65535, 'x');
    full[0] = 'a';
    full[65534] = 'z';
    file("[App]\r\nexact=" + full + "\r\nlonger=" + full + "TAIL\r\n");
    EXPECT_EQ(value("App", "exact"), full);
    EXPECT_EQ(value("App", "longer"), full);
}

TEST_F(ProfileParse, KeyNamesHaveNoLengthLimit) {
    const std::string key(100000, 'k');
    file("[App]\r\n" + key + "=found\r\n");
    EXPECT_EQ(value("App", key), "found");
}

TEST_F(ProfileParse, EightBitBytesPassThroughUnchanged) {
    file("[Gr\xe4\xdf"
         "e]\r\nK\xfc"
         "hl=\xb5V \xe9t\xe9\r\nutf=\xc3\xa4\r\n");
    EXPECT_EQ(value("Gr\xe4\xdf"
                    "e",
                    "K\xfc"
                    "hl"),
              "\xb5V \xe9t\xe9");
    EXPECT_EQ(value("Gr\xe4\xdf"
                    "e",
                    "utf"),
              "\xc3\xa4");
}

TEST_F(ProfileParse, Utf8ByteOrderMarkBelongsToTheFirstLine) {
    file("\xef\xbb\xbf[App]\r\nk=v\r\n[Next]\r\nn=1\r\n");
    EXPECT_EQ(value("App", "k"), "<default>");
    EXPECT_EQ(value("\xef\xbb\xbf[App]", "k"), "<default>");
    EXPECT_EQ(value("Next", "n"), "1");
    const Read list = readProfile(std::nullopt, std::nullopt, std::nullopt, 16, path);
    EXPECT_EQ(list.head(6), "Next\0\0"s);
}

TEST_F(ProfileParse, BomBeforeAKeyLineMakesItAKeyOfNoSection) {
    file("\xef\xbb\xbfk=v\r\n[App]\r\nk=w\r\n");
    EXPECT_EQ(value("App", "k"), "w");
}

TEST_F(ProfileParse, ArgumentsEndAtTheirFirstNul) {
    file("[App]\r\nkey=value\r\n");
    EXPECT_EQ(value("App\0junk"s, "key\0junk"s), "value");
}

} // namespace
