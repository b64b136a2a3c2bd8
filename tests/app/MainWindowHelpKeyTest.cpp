// F1 opens the manual at the page for the window in front, from the main window and from the
// windows it opens; the HELP button keeps opening the manual at its first page.
#include "app/MainWindowFixture.h"
#include "support/HelpWindow.h"
#include "support/WindowSteps.h"
#include "widgets/LitButton.h"

#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QTest>
#include <QTextBrowser>

using namespace zorvik;
using zorvik::test::MainWindowFixture;

namespace {

class MainWindowHelpKey : public MainWindowFixture {
protected:
    void SetUp() override {
        MainWindowFixture::SetUp();
        ASSERT_TRUE(QDir(dir.path()).mkpath("Help"));
        for (const char* page : {"index.html", "front-panel.html", "options.html", "reference.html",
                                 "printing.html", "troubleshooting.html"}) {
            QFile file(dir.filePath(QString("Help/") + page));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(QByteArray("<html><head><title>") + page + "</title></head><body><p>" +
                       page + "</p></body></html>");
        }
    }
    QUrl page(const char* name) const {
        return QUrl::fromLocalFile(dir.filePath(QString("Help/") + name));
    }

    /// The visible help window that belongs to `owner`, if any.
    static HelpWindow* helpOf(QWidget* owner) {
        auto* help = owner->findChild<HelpWindow*>(QString(), Qt::FindDirectChildrenOnly);
        return help && help->isVisible() ? help : nullptr;
    }
};

TEST_F(MainWindowHelpKey, WindowsAndTheirPages) {
    EXPECT_EQ(frmMain::helpPageFor(nullptr), "index.html");
    QWidget main;
    main.setObjectName("frmMain");
    EXPECT_EQ(frmMain::helpPageFor(&main), "front-panel.html");
    const std::pair<const char*, const char*> named[] = {
        {"frmFile", "reference.html"},         {"frmOptions", "options.html"},
        {"frmPageSetup", "printing.html"},     {"frmPreview", "printing.html"},
        {"PrintSetupDialog", "printing.html"}, {"SystemInfoDialog", "connecting.html"},
        {"frmSplash", "index.html"},
    };
    for (const auto& [name, expected] : named) {
        QWidget w;
        w.setObjectName(name);
        EXPECT_EQ(frmMain::helpPageFor(&w), expected) << name;
    }
    QMessageBox box;
    box.setWindowTitle("Communication Error");
    EXPECT_EQ(frmMain::helpPageFor(&box), "troubleshooting.html");
    box.setWindowTitle("File Load Error");
    EXPECT_EQ(frmMain::helpPageFor(&box), "reference.html");
}

TEST_F(MainWindowHelpKey, F1OnTheMainWindowOpensTheFrontPanelPageAndHelpTheFirstPage) {
    frmMain& w = start();
    w.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&w));
    QTest::keyClick(w.panel().CWBPwr, Qt::Key_F1);
    HelpWindow* help = helpOf(&w);
    ASSERT_NE(help, nullptr);
    EXPECT_EQ(help->browser()->source(), page("front-panel.html"));
    EXPECT_EQ(help->home(), page("index.html"));
    // The key opens help and does nothing else: POWER stays off.
    EXPECT_FALSE(w.panel().CWBPwr->value());

    // HELP keeps its own behaviour: the manual at its first page.
    w.panel().CWBHelp->setValue(true);
    w.panel().CWBHelp->setValue(false);
    EXPECT_EQ(help->browser()->source(), page("index.html"));

    // F1 in the help window goes to the first page too.
    help->showPage("reference.html");
    QTest::keyClick(help->browser(), Qt::Key_F1);
    EXPECT_EQ(help->browser()->source(), page("index.html"));
}

// From a modal window the help window belongs to that window, so it can be used while the
// modal window is up.
TEST_F(MainWindowHelpKey, F1InTheOptionsWindowOpensTheOptionsPageThere) {
    frmMain& w = start();
    QUrl shown;
    bool ownedByOptions = false;
    test::whenVisible<QDialog>([&](QDialog* options) {
        if (!QTest::qWaitForWindowActive(options))
            ADD_FAILURE() << "the Options window never became active";
        QTest::keyClick(options, Qt::Key_F1);
        if (HelpWindow* help = helpOf(options)) {
            shown = help->browser()->source();
            ownedByOptions = true;
        }
        options->reject();
    });
    w.showOptionsForm();
    EXPECT_TRUE(ownedByOptions);
    EXPECT_EQ(shown, page("options.html"));
}

} // namespace
