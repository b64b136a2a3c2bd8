// zorvik-cli wdf on files that do not load: the window's messages on standard error, status 1
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

/// The window's load message, as wdf prints it for `path`.
QByteArray loadError(const QString& path) {
    return "zorvik-cli: " + path.toUtf8() + ": Please Select a Waveform Data File (*.wdf)!\n";
}
/// Both messages of a file for another application, in order.
QByteArray bothMessages(const QString& path) {
    return "zorvik-cli: " + path.toUtf8() + ": File is not for this application!\n" +
           loadError(path);
}

/// A failed load: status 1, `err` exactly, and not a byte on standard output.
void expectFailure(const CliResult& r, const QByteArray& err) {
    ASSERT_TRUE(r.finished);
    EXPECT_FALSE(r.crashed);
    EXPECT_EQ(r.exitCode, kFailureStatus);
    EXPECT_EQ(r.err, err);
    EXPECT_TRUE(r.out.isEmpty()) << r.out.toStdString();
}

/// Writes `text` as `name` and runs wdf on it: a failure with the load message, preceded by
/// "File is not for this application!" when `notOurs`.
void expectWdfFailure(const QByteArray& text, const QString& name, bool notOurs) {
    QTemporaryDir dir;
    const QString path = writeText(dir, name, text);
    expectFailure(runCli({"wdf", path}), notOurs ? bothMessages(path) : loadError(path));
}

} // namespace

TEST(CliWdfFailure, WrongExtensionShowsOnlyTheLoadErrorMessage) {
    expectWdfFailure(wdfFixture("windows-style.wdf"), "trace.txt", false);
}

TEST(CliWdfFailure, WrongExtensionIsRefusedBeforeTheFileIsLookedAt) {
    // No reason line about the missing file: a name that does not end in "wdf" is not read.
    expectFailure(runCli({"wdf", "/nonexistent/trace.txt"}), loadError("/nonexistent/trace.txt"));
}

TEST(CliWdfFailure, WrongNameShowsBothMessagesInOrder) {
    const QByteArray text = edited(wdfFixture("windows-style.wdf"), "Name=Zorvik", "Name=Other");
    ASSERT_FALSE(text.isEmpty());
    expectWdfFailure(text, "other.wdf", true);
}

TEST(CliWdfFailure, NameInAnotherLetterCaseIsAWrongName) {
    const QByteArray text = edited(wdfFixture("windows-style.wdf"), "Name=Zorvik", "Name=ZORVIK");
    ASSERT_FALSE(text.isEmpty());
    expectWdfFailure(text, "upper.wdf", true);
}

TEST(CliWdfFailure, GarbageFileHasNoNameAndShowsBothMessages) {
    expectWdfFailure(wdfFixture("garbage.wdf"), "garbage.wdf", true);
}

TEST(CliWdfFailure, MissingReftrace7ShowsTheLoadErrorMessage) {
    const QByteArray fixture = wdfFixture("windows-style.wdf");
    const qsizetype begin = fixture.indexOf("Reftrace7=");
    const qsizetype end = fixture.indexOf('\n', begin);
    ASSERT_GE(begin, 0);
    QByteArray text = fixture;
    text.remove(begin, end + 1 - begin);
    expectWdfFailure(text, "short.wdf", false);
}

TEST(CliWdfFailure, SampleThatIsNoNumberShowsTheLoadErrorMessage) {
    const QByteArray text =
        edited(wdfFixture("windows-style.wdf"), "Reftrace3=-0.3333332,", "Reftrace3=abc,");
    ASSERT_FALSE(text.isEmpty());
    expectWdfFailure(text, "bad-sample.wdf", false);
}

TEST(CliWdfFailure, EmptySamplePieceShowsTheLoadErrorMessage) {
    const QByteArray text =
        edited(wdfFixture("windows-style.wdf"), "Reftrace3=-0.3333332,", "Reftrace3=,");
    ASSERT_FALSE(text.isEmpty());
    expectWdfFailure(text, "empty-piece.wdf", false);
}

TEST(CliWdfFailure, HardwareByteAbove255ShowsTheLoadErrorMessage) {
    const QByteArray text = edited(wdfFixture("windows-style.wdf"), "Range=32", "Range=256");
    ASSERT_FALSE(text.isEmpty());
    expectWdfFailure(text, "big-byte.wdf", false);
}

TEST(CliWdfFailure, LineLongerThan254CharactersIsCutAndTheFileFails) {
    // Each Reftrace line of this file holds 20 exponent-form samples: about 280 characters.
    expectWdfFailure(wdfFixture("long-line.wdf"), "long-line.wdf", false);
}

TEST(CliWdfFailure, EmptyFileSaysSoThenShowsBothMessages) {
    QTemporaryDir dir;
    const QString path = writeText(dir, "empty.wdf", {});
    expectFailure(runCli({"wdf", path}),
                  "zorvik-cli: " + path.toUtf8() + ": is empty\n" + bothMessages(path));
}

TEST(CliWdfFailure, MissingFileSaysWhyThenShowsBothMessages) {
    QTemporaryDir dir;
    const QString path = dir.filePath("missing.wdf");
    expectFailure(runCli({"wdf", path}), "zorvik-cli: " + path.toUtf8() +
                                             ": No such file or directory\n" + bothMessages(path));
}

TEST(CliWdfFailure, DirectoryNamedLikeAFileSaysWhyThenShowsBothMessages) {
    QTemporaryDir dir;
    const QString path = dir.filePath("x.wdf");
    ASSERT_TRUE(QDir().mkdir(path));
    expectFailure(runCli({"wdf", path}),
                  "zorvik-cli: " + path.toUtf8() + ": Is a directory\n" + bothMessages(path));
}

TEST(CliWdfFailure, UnreadableFileSaysWhyThenShowsBothMessages) {
    QTemporaryDir dir;
    ASSERT_TRUE(QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner |
                                                      QFile::ExeOwner | QFile::ReadOther |
                                                      QFile::ExeOther));
    const QString path = writeText(dir, "locked.wdf", wdfFixture("windows-style.wdf"));
    ASSERT_TRUE(QFile::setPermissions(path, QFile::WriteOwner));
    // Permissions do not hold for the administrator: the program then runs as "nobody".
    expectFailure(runCliUnprivileged({"wdf", path}),
                  "zorvik-cli: " + path.toUtf8() + ": Permission denied\n" + bothMessages(path));
}
