// frmFile: its controls and keys, and the File menu's Open, Save and Save As with faked file
// dialogs and a stand-in for the main window.
#include "storage/frmFile.h"
#include "FakeFileHost.h"
#include "IniTestSupport.h"
#include "WaveformTestSupport.h"
#include "storage/WaveformFile.h"
#include "support/MessageBox.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::testing;

namespace {

namespace fs = std::filesystem;

/// One use of a faked file dialog: what it was given.
struct DialogUse {
    QString filter;
    QString fileName;
};

class frmFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        auto owned = std::make_unique<FakeFileHost>();
        host = owned.get();
        host->record = untouchedRecord();
        form = std::make_unique<frmFile>(std::move(owned));
        form->setOpenChooser([this](QWidget* parent, const QString& filter, const QString& name) {
            EXPECT_EQ(parent, form.get());
            openUses.push_back({filter, name});
            return openAnswer;
        });
        form->setSaveChooser([this](QWidget* parent, const QString& filter, const QString& name) {
            EXPECT_EQ(parent, form.get());
            saveUses.push_back({filter, name});
            return saveAnswer;
        });
        MessageBoxes::setInterceptor([this](const MessageRecord& m) {
            messages.push_back(m);
            currentFileAtMessage << form->sCurrentFile;
            return QMessageBox::Ok;
        });
    }
    void TearDown() override { MessageBoxes::setInterceptor({}); }

    /// A copy of a fixture in the test's folder (a save through the form may write to it).
    QString fixture(const char* name) const { return copyOf(name, name); }
    QString file(const char* name) const { return QString::fromStdString(dir.file(name)); }
    /// A copy of a fixture under another name in the test's folder.
    QString copyOf(const char* fixtureName, const char* name) const {
        writeBytes(dir.file(name), readBytes(wdfFixture(fixtureName)));
        return file(name);
    }

    TempDir dir;
    FakeFileHost* host = nullptr;
    std::unique_ptr<frmFile> form;
    std::optional<QString> openAnswer;
    std::optional<QString> saveAnswer;
    std::vector<DialogUse> openUses;
    std::vector<DialogUse> saveUses;
    std::vector<MessageRecord> messages;
    QStringList currentFileAtMessage;
};

const QStringList kShownCalls = {"blnRefLoaded=True", "FormatDispData", "ChartA",
                                 "CWBRef_ValueChanged(True)"};

TEST_F(frmFileTest, ControlsCarryTheirNamesAndCaptions) {
    EXPECT_EQ(form->objectName(), "frmFile");
    auto* open = form->findChild<QAction*>("mnuFileOpen");
    ASSERT_NE(open, nullptr);
    EXPECT_EQ(open->text(), "&Open...");
    EXPECT_EQ(form->findChild<QAction*>("mnuFileSave")->text(), "&Save");
    EXPECT_EQ(form->findChild<QAction*>("mnuFileSaveAs")->text(), "Save &As...");
    EXPECT_EQ(form->findChild<QAction*>("mnuFileExit")->text(), "E&xit");
    EXPECT_EQ(form->findChild<QAction*>("mnuAbout")->text(), "&About");
    // File holds the four items; About sits on the menu bar itself.
    EXPECT_EQ(form->mnuFile->title(), "&File");
    EXPECT_EQ(form->mnuFile->actions().size(), 5); // with the separator above Exit
    EXPECT_TRUE(form->menuBar->actions().contains(form->mnuAbout));
    auto* ok = form->findChild<QPushButton*>("OKButton");
    auto* cancel = form->findChild<QPushButton*>("CancelButton");
    ASSERT_NE(ok, nullptr);
    ASSERT_NE(cancel, nullptr);
    EXPECT_EQ(ok->text(), "OK");
    EXPECT_EQ(cancel->text(), "Cancel");
    EXPECT_EQ(ok->accessibleName(), "OK");
    EXPECT_TRUE(ok->isDefault());
    EXPECT_TRUE(form->sCurrentFile.isEmpty());
}

TEST_F(frmFileTest, TheFormIsCentredOnTheScreenWhenItLoads) {
    form->move(0, 0);
    form->Form_Load();
    const QRect screen = form->screen()->geometry();
    EXPECT_EQ(form->x(), screen.x() + (screen.width() - form->width()) / 2);
    EXPECT_EQ(form->y(), screen.y() + (screen.height() - form->height()) / 2);
}

TEST_F(frmFileTest, EnterClosesTheFormThroughOkAndEscapeThroughCancel) {
    form->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
    QTest::keyClick(form.get(), Qt::Key_Return);
    EXPECT_FALSE(form->isVisible());
    form->show();
    QTest::keyClick(form.get(), Qt::Key_Escape);
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmFileTest, OkCancelAndExitEachCloseTheForm) {
    form->show();
    form->OKButton->click();
    EXPECT_FALSE(form->isVisible());
    form->show();
    form->CancelButton->click();
    EXPECT_FALSE(form->isVisible());
    form->show();
    form->mnuFileExit->trigger();
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(host->calls.isEmpty());
    EXPECT_TRUE(messages.empty());
}

TEST_F(frmFileTest, AboutShowsTheAboutBoxOwnedByTheForm) {
    form->mnuAbout->trigger();
    EXPECT_EQ(host->calls, QStringList{"About"});
    EXPECT_EQ(host->aboutOwner, form.get());
}

TEST_F(frmFileTest, OpenLoadsTheFileAndShowsItAsTheReference) {
    openAnswer = fixture("windows-style.wdf");
    form->mnuFileOpen->trigger();
    ASSERT_EQ(openUses.size(), 1u);
    EXPECT_EQ(openUses[0].filter, "Waveform Data Files (*.wdf)");
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(host->calls, kShownCalls);
    EXPECT_EQ(form->sCurrentFile, *openAnswer);
    EXPECT_EQ(host->record.timeRange, 9);
    EXPECT_EQ(bits(host->record.volts[1]), bits(asFiled(probeVolts(34, 0x00))));
    EXPECT_TRUE(host->record.reference);
    // The next Open starts from the name chosen last.
    openAnswer.reset();
    form->mnuFileOpen_Click();
    EXPECT_EQ(openUses.at(1).fileName, fixture("windows-style.wdf"));
}

TEST_F(frmFileTest, CancellingOpenLoadsNothing) {
    form->sCurrentFile = "kept.wdf";
    form->mnuFileOpen_Click();
    EXPECT_EQ(openUses.size(), 1u);
    EXPECT_TRUE(host->calls.isEmpty());
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(form->sCurrentFile, "kept.wdf");
    EXPECT_EQ(host->record.timeRange, 1);
}

TEST_F(frmFileTest, AnUpperCaseWdfNameOpens) {
    openAnswer = copyOf("windows-style.wdf", "BENCH3.WDF");
    form->mnuFileOpen_Click();
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(host->calls, kShownCalls);
    EXPECT_EQ(form->sCurrentFile, file("BENCH3.WDF"));
}

TEST_F(frmFileTest, ATxtFileShowsOnlyTheLoadError) {
    form->sCurrentFile = "earlier.wdf";
    openAnswer = copyOf("windows-style.wdf", "trace.txt");
    form->mnuFileOpen_Click();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].title, "File Load Error");
    EXPECT_EQ(messages[0].text, "Please Select a Waveform Data File (*.wdf)!");
    EXPECT_EQ(messages[0].icon, MsgIcon::Exclamation);
    EXPECT_EQ(messages[0].buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    EXPECT_TRUE(form->sCurrentFile.isEmpty());
    EXPECT_TRUE(host->calls.isEmpty());
    EXPECT_EQ(host->record.timeRange, 1);
}

TEST_F(frmFileTest, AWrongNameShowsBothMessagesInOrderAndChangesNothing) {
    std::string text = readBytes(wdfFixture("windows-style.wdf"));
    text.replace(text.find("Name=Zorvik"), 11, "Name=Scopex");
    writeBytes(dir.file("other.wdf"), text);
    openAnswer = file("other.wdf");
    form->mnuFileOpen_Click();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].text, "File is not for this application!");
    EXPECT_EQ(messages[0].title, "File Format");
    EXPECT_EQ(messages[0].icon, MsgIcon::Critical);
    EXPECT_EQ(messages[1].text, "Please Select a Waveform Data File (*.wdf)!");
    EXPECT_EQ(messages[1].title, "File Load Error");
    EXPECT_EQ(messages[1].icon, MsgIcon::Exclamation);
    // The file was the current one while it was read, and no longer is.
    EXPECT_EQ(currentFileAtMessage[0], file("other.wdf"));
    EXPECT_TRUE(form->sCurrentFile.isEmpty());
    EXPECT_TRUE(host->calls.isEmpty());
    EXPECT_EQ(host->record.timeRange, 1);
    EXPECT_EQ(host->record.chaOffset, 3.25);
    EXPECT_EQ(host->record.state.bytSwitchSetting, 0x18);
    EXPECT_EQ(host->record.volts[0], 99.0f);
}

TEST_F(frmFileTest, BinaryGarbageAndAFolderNamedWdfShowBothMessages) {
    for (const QString& path : {fixture("garbage.wdf"), file("x.wdf")}) {
        fs::create_directory(dir.path() / "x.wdf");
        messages.clear();
        openAnswer = path;
        form->mnuFileOpen_Click();
        ASSERT_EQ(messages.size(), 2u) << path.toStdString();
        EXPECT_EQ(messages[0].title, "File Format");
        EXPECT_EQ(messages[1].title, "File Load Error");
        EXPECT_TRUE(host->calls.isEmpty());
    }
}

TEST_F(frmFileTest, AFileThatFailsHalfWayKeepsWhatItAppliedAndShowsTheLoadError) {
    std::string text = readBytes(wdfFixture("windows-style.wdf"));
    const auto start = text.find("Reftrace7=");
    text.erase(start, text.find("\r\n", start) + 2 - start);
    writeBytes(dir.file("short.wdf"), text);
    openAnswer = file("short.wdf");
    form->mnuFileOpen_Click();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].title, "File Load Error");
    EXPECT_TRUE(host->calls.isEmpty());
    EXPECT_FALSE(host->refLoaded);
    EXPECT_EQ(host->record.timeRange, 9);
    EXPECT_EQ(bits(host->record.volts[119]), bits(asFiled(probeVolts(8, 0x00))));
    EXPECT_EQ(host->record.volts[120], 99.0f);
}

TEST_F(frmFileTest, SaveAndSaveAsWithTheReferenceOffSayThereIsNoData) {
    host->ref = false;
    form->sCurrentFile = file("current.wdf");
    form->mnuFileSave->trigger();
    form->mnuFileSaveAs->trigger();
    ASSERT_EQ(messages.size(), 2u);
    for (const auto& m : messages) {
        EXPECT_EQ(m.text, "No data to save - Acquire reference waveform.");
        EXPECT_EQ(m.title, "File Save Error");
        EXPECT_EQ(m.icon, MsgIcon::Information);
    }
    EXPECT_TRUE(saveUses.empty());
    EXPECT_FALSE(fs::exists(dir.file("current.wdf")));
}

TEST_F(frmFileTest, SaveWritesTheCurrentFileWithoutADialog) {
    host->record = probeRecord(0x04);
    form->sCurrentFile = file("current.wdf");
    form->mnuFileSave_Click();
    EXPECT_TRUE(saveUses.empty());
    EXPECT_TRUE(messages.empty());
    WaveformRecord back = untouchedRecord();
    cInifile ini;
    EXPECT_EQ(WaveformFile::LoadWaveformFile(ini, dir.file("current.wdf"), back),
              WaveformLoadResult::Loaded);
    EXPECT_EQ(bits(back.volts[5]), bits(asFiled(host->record.volts[5])));
}

TEST_F(frmFileTest, SaveWithNoCurrentFileAsksForANameLikeSaveAs) {
    saveAnswer = file("chosen.wdf");
    form->mnuFileSave_Click();
    ASSERT_EQ(saveUses.size(), 1u);
    EXPECT_EQ(saveUses[0].fileName, "");
    EXPECT_EQ(saveUses[0].filter, "Waveform Data Files (*.wdf)");
    EXPECT_TRUE(fs::exists(dir.file("chosen.wdf")));
    EXPECT_EQ(form->sCurrentFile, file("chosen.wdf"));
}

TEST_F(frmFileTest, SaveAsOffersTheCurrentFileAndMakesTheChosenNameCurrent) {
    form->sCurrentFile = file("first.wdf");
    saveAnswer = file("second.wdf");
    form->mnuFileSaveAs_Click();
    ASSERT_EQ(saveUses.size(), 1u);
    EXPECT_EQ(saveUses[0].fileName, file("first.wdf"));
    EXPECT_TRUE(fs::exists(dir.file("second.wdf")));
    EXPECT_FALSE(fs::exists(dir.file("first.wdf")));
    EXPECT_EQ(form->sCurrentFile, file("second.wdf"));
    EXPECT_TRUE(messages.empty());
}

TEST_F(frmFileTest, CancellingSaveAsSavesUnderTheNameTheDialogReturns) {
    host->record = probeRecord(0x08);
    form->sCurrentFile = file("current.wdf");
    form->mnuFileSaveAs_Click(); // the dialog is cancelled: it returns its preset name
    ASSERT_EQ(saveUses.size(), 1u);
    EXPECT_TRUE(fs::exists(dir.file("current.wdf")));
    EXPECT_EQ(form->sCurrentFile, file("current.wdf"));
    EXPECT_TRUE(messages.empty());
}

TEST_F(frmFileTest, CancellingSaveAsWithNoCurrentFileWritesNothingAndSaysNothing) {
    form->mnuFileSaveAs_Click();
    EXPECT_EQ(saveUses.size(), 1u);
    EXPECT_TRUE(messages.empty());
    EXPECT_TRUE(form->sCurrentFile.isEmpty());
    EXPECT_TRUE(fs::is_empty(dir.path()));
}

TEST_F(frmFileTest, SaveAsOverAReadOnlyFileKeepsItAndTheCurrentFile) {
    writeBytes(dir.file("locked.wdf"), "[NOTES]\r\nKeep=1\r\n");
    fs::permissions(dir.file("locked.wdf"), fs::perms::owner_read);
    form->sCurrentFile = file("current.wdf");
    saveAnswer = file("locked.wdf");
    form->mnuFileSaveAs_Click();
    EXPECT_EQ(readBytes(dir.file("locked.wdf")), "[NOTES]\r\nKeep=1\r\n");
    EXPECT_EQ(form->sCurrentFile, file("current.wdf"));
    EXPECT_TRUE(messages.empty());
}

TEST_F(frmFileTest, OpenFileIsWhatACommandLineFileGoesThrough) {
    EXPECT_TRUE(form->openFile(fixture("windows-style.wdf")));
    EXPECT_EQ(host->calls, kShownCalls);
    EXPECT_FALSE(form->openFile(file("missing.wdf")));
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].title, "File Format");
    EXPECT_EQ(messages[1].title, "File Load Error");
}

} // namespace
