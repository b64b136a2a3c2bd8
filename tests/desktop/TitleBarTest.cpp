// Every window's title bar, as the X server holds it, reads exactly the window's own title:
// nothing appended by the toolkit.
#include "DesktopWindowFixture.h"
#include "X11Window.h"
#include "storage/frmFile.h"
#include "widgets/LitButton.h"

#include <QDialog>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QToolBar>
#include <map>

using namespace zorvik;
using namespace zorvik::test;

namespace {

class TitleBars : public DesktopWindowFixture {
protected:
    /// Records the title bar of the window titled `title` once it shows, then closes it.
    void readAndClose(const QString& title) {
        whenShown(title, [this, title](QWidget* w) {
            seen[title] = awaitTitleBarText(w);
            w->close();
        });
    }
    std::map<QString, QString> seen;
};

TEST_F(TitleBars, TheMainWindowReadsZorvik) {
    frmMain& w = start();
    EXPECT_EQ(awaitTitleBarText(&w), "Zorvik");
}

TEST_F(TitleBars, TheCommunicationErrorBoxReadsItsTitleOnlyAndOffersItsDetails) {
    frmMain& w = start();
    QString details;
    QStringList buttons;
    whenShown("Communication Error", [&](QWidget* w) {
        seen["Communication Error"] = awaitTitleBarText(w);
        auto* box = qobject_cast<QMessageBox*>(w);
        if (box) {
            details = box->detailedText();
            for (QAbstractButton* b : box->buttons())
                buttons << b->text();
        }
        w->close();
    });
    w.panel().CWBPwr->setValue(true); // no port is present: the search fails at once
    ASSERT_TRUE(QTest::qWaitFor([&] { return seen.count("Communication Error") == 1; }, 10000));
    EXPECT_EQ(seen["Communication Error"], "Communication Error");
    // OK, and the button that shows why each port failed.
    EXPECT_TRUE(buttons.contains("OK")) << buttons.join('|').toStdString();
    EXPECT_TRUE(buttons.contains("Show Details...")) << buttons.join('|').toStdString();
    EXPECT_TRUE(details.startsWith("COM1 (")) << details.toStdString();
    EXPECT_EQ(details.count('\n'), 8);
}

TEST_F(TitleBars, TheTwoLoadMessagesReadTheirTitlesOnly) {
    frmMain& w = start();
    const QString path = dir.filePath("other.wdf");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[APPLICATION]\r\nName=Other\r\n");
    file.close();
    readAndClose("File Format");
    readAndClose("File Load Error");
    w.openWaveformFile(path);
    ASSERT_TRUE(QTest::qWaitFor([&] { return seen.size() == 2; }, 10000));
    EXPECT_EQ(seen["File Format"], "File Format");
    EXPECT_EQ(seen["File Load Error"], "File Load Error");
}

TEST_F(TitleBars, TheOptionsWindowReadsOptions) {
    frmMain& w = start();
    readAndClose("Options");
    w.panel().CWBMenu->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return seen.count("Options") == 1; }, 10000));
    EXPECT_EQ(seen["Options"], "Options");
}

// FILE opens the File window; from it Save with REF off, and About with its System Info.
TEST_F(TitleBars, TheFileWindowItsSaveMessageAndTheAboutBoxReadTheirTitles) {
    frmMain& w = start();
    whenShown("File", [this](QWidget* form) {
        seen["File"] = awaitTitleBarText(form);
        auto* f = static_cast<frmFile*>(form);
        readAndClose("File Save Error");
        f->mnuFileSave->trigger();
        whenShown("About Zorvik", [this, f](QWidget* about) {
            seen["About Zorvik"] = awaitTitleBarText(about);
            readAndClose("System Information");
            about->findChild<QPushButton*>("cmdSysInfo")->click();
            (void)QTest::qWaitFor([&] { return seen.count("System Information") == 1; }, 10000);
            about->close();
            f->close();
        });
        f->mnuAbout->trigger();
    });
    w.panel().CWBFile->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return seen.size() == 4; }, 20000));
    EXPECT_EQ(seen["File"], "File");
    EXPECT_EQ(seen["File Save Error"], "File Save Error");
    EXPECT_EQ(seen["About Zorvik"], "About Zorvik");
    EXPECT_EQ(seen["System Information"], "System Information");
}

TEST_F(TitleBars, ThePreviewAndPageSetupReadTheirTitles) {
    frmMain& w = start();
    whenShown("Print Preview", [this](QWidget* preview) {
        seen["Print Preview"] = awaitTitleBarText(preview);
        readAndClose("Page Setup");
        auto* toolbar = preview->findChild<QToolBar*>();
        for (QAction* a : toolbar->actions()) {
            if (a->data().toString() == "PSetup" || a->objectName() == "PSetup")
                a->trigger();
        }
        (void)QTest::qWaitFor([&] { return seen.count("Page Setup") == 1; }, 10000);
        preview->close();
    });
    w.CWBPrint_ValueChanged(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return seen.size() == 2; }, 20000));
    EXPECT_EQ(seen["Print Preview"], "Print Preview");
    EXPECT_EQ(seen["Page Setup"], "Page Setup");
}

TEST_F(TitleBars, TheHelpWindowReadsItsTitleOnly) {
    frmMain& w = start();
    w.CWBHelp_ValueChanged(false);
    QWidget* help = nullptr;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            for (QWidget* t : QApplication::topLevelWidgets()) {
                if (t->isVisible() && t->windowTitle().endsWith("Help"))
                    help = t;
            }
            return help != nullptr;
        },
        10000));
    EXPECT_EQ(awaitTitleBarText(help), help->windowTitle());
}

} // namespace
