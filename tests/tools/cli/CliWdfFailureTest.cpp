// zorvik-cli wdf on files that do not load: the window's messages on standard error, status 2
// and nothing at all on standard output.
#include "CliRunner.h"
#include "WdfFiles.h"

#include <QDir>
#include <QFile>
#include <grp.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

const QByteArray kLoadError = "Please Select a Waveform Data File (*.wdf)!\n";
const QByteArray kBothMessages =
    "File is not for this application!\nPlease Select a Waveform Data File (*.wdf)!\n";

CliResult wdfOf(const QByteArray& text, const QString& name) {
    QTemporaryDir dir;
    return runCli({"wdf", writeText(dir, name, text)});
}

/// A failed load: status 2, `err` exactly, and not a byte on standard output.
void expectFailure(const CliResult& r, const QByteArray& err) {
    ASSERT_TRUE(r.finished);
    EXPECT_FALSE(r.crashed);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, err);
    EXPECT_TRUE(r.out.isEmpty()) << r.out.toStdString();
}

} // namespace

TEST(CliWdfFailure, WrongExtensionShowsOnlyTheLoadErrorMessage) {
    expectFailure(wdfOf(wdfFixture("windows-style.wdf"), "trace.txt"), kLoadError);
}

TEST(CliWdfFailure, WrongExtensionIsRefusedBeforeTheFileIsLookedAt) {
    // No reason line about the missing file: a name that does not end in "wdf" is not read.
    expectFailure(runCli({"wdf", "/nonexistent/trace.txt"}), kLoadError);
}

TEST(CliWdfFailure, WrongNameShowsBothMessagesInOrder) {
    const QByteArray text = edited(wdfFixture("windows-style.wdf"), "Name=Zorvik", "Name=Other");
    ASSERT_FALSE(text.isEmpty());
    expectFailure(wdfOf(text, "other.wdf"), kBothMessages);
}

TEST(CliWdfFailure, NameInAnotherLetterCaseIsAWrongName) {
    const QByteArray text = edited(wdfFixture("windows-style.wdf"), "Name=Zorvik", "Name=ZORVIK");
    ASSERT_FALSE(text.isEmpty());
    expectFailure(wdfOf(text, "upper.wdf"), kBothMessages);
}

TEST(CliWdfFailure, GarbageFileHasNoNameAndShowsBothMessages) {
    expectFailure(wdfOf(wdfFixture("garbage.wdf"), "garbage.wdf"), kBothMessages);
}

TEST(CliWdfFailure, MissingReftrace7ShowsTheLoadErrorMessage) {
    const QByteArray fixture = wdfFixture("windows-style.wdf");
    const qsizetype begin = fixture.indexOf("Reftrace7=");
    const qsizetype end = fixture.indexOf('\n', begin);
    ASSERT_GE(begin, 0);
    QByteArray text = fixture;
    text.remove(begin, end + 1 - begin);
    expectFailure(wdfOf(text, "short.wdf"), kLoadError);
}

TEST(CliWdfFailure, SampleThatIsNoNumberShowsTheLoadErrorMessage) {
    const QByteArray text =
        edited(wdfFixture("windows-style.wdf"), "Reftrace3=-0.3333332,", "Reftrace3=abc,");
    ASSERT_FALSE(text.isEmpty());
    expectFailure(wdfOf(text, "bad-sample.wdf"), kLoadError);
}

TEST(CliWdfFailure, EmptySamplePieceShowsTheLoadErrorMessage) {
    const QByteArray text =
        edited(wdfFixture("windows-style.wdf"), "Reftrace3=-0.3333332,", "Reftrace3=,");
    ASSERT_FALSE(text.isEmpty());
    expectFailure(wdfOf(text, "empty-piece.wdf"), kLoadError);
}

TEST(CliWdfFailure, HardwareByteAbove255ShowsTheLoadErrorMessage) {
    const QByteArray text = edited(wdfFixture("windows-style.wdf"), "Range=32", "Range=256");
    ASSERT_FALSE(text.isEmpty());
    expectFailure(wdfOf(text, "big-byte.wdf"), kLoadError);
}

TEST(CliWdfFailure, LineLongerThan254CharactersIsCutAndTheFileFails) {
    // Each Reftrace line of this file holds 20 exponent-form samples: about 280 characters.
    expectFailure(wdfOf(wdfFixture("long-line.wdf"), "long-line.wdf"), kLoadError);
}

TEST(CliWdfFailure, EmptyFileSaysSoThenShowsBothMessages) {
    QTemporaryDir dir;
    const QString path = writeText(dir, "empty.wdf", {});
    expectFailure(runCli({"wdf", path}),
                  "zorvik-cli: " + path.toUtf8() + " is empty\n" + kBothMessages);
}

TEST(CliWdfFailure, MissingFileSaysWhyThenShowsBothMessages) {
    QTemporaryDir dir;
    const QString path = dir.filePath("missing.wdf");
    expectFailure(runCli({"wdf", path}), "zorvik-cli: cannot open " + path.toUtf8() +
                                             ": No such file or directory\n" + kBothMessages);
}

TEST(CliWdfFailure, DirectoryNamedLikeAFileSaysWhyThenShowsBothMessages) {
    QTemporaryDir dir;
    const QString path = dir.filePath("x.wdf");
    ASSERT_TRUE(QDir().mkdir(path));
    expectFailure(runCli({"wdf", path}), "zorvik-cli: cannot read " + path.toUtf8() +
                                             ": Is a directory\n" + kBothMessages);
}

TEST(CliWdfFailure, UnreadableFileSaysWhyThenShowsBothMessages) {
    QTemporaryDir dir;
    ASSERT_TRUE(QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner |
                                                      QFile::ExeOwner | QFile::ReadOther |
                                                      QFile::ExeOther));
    const QString path = writeText(dir, "locked.wdf", wdfFixture("windows-style.wdf"));
    ASSERT_TRUE(QFile::setPermissions(path, QFile::WriteOwner));
    // Permissions do not hold for the administrator: the program then runs as "nobody".
    expectFailure(runCliUnprivileged({"wdf", path}), "zorvik-cli: cannot open " + path.toUtf8() +
                                                         ": Permission denied\n" + kBothMessages);
}
