// The user manual as the built program finds it: HELP opens its first page from the Help
// folder beside the program, every page is reachable from there, and every link, anchor and
// picture of every page resolves, for the help window as well as for a desktop browser.
#include "app/ProgramServices.h"
#include "app/frmMain.h"
#include "common/FakeSerialLink.h"
#include "help/ManualWalker.h"
#include "instrument/PortMap.h"
#include "support/HelpWindow.h"
#include "support/MessageBox.h"
#include "widgets/LitButton.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
#include <gtest/gtest.h>
#include <memory>

namespace zorvik::test {

namespace {

// The manual in the repository, the folder of the built program, and the copy of the manual
// that the build puts beside it.
const QString kSourceFolder = QStringLiteral(ZORVIK_HELP_SOURCE_DIR);
const QString kProgramFolder = QStringLiteral(ZORVIK_PROGRAM_DIR);
const QString kBuiltFolder = QStringLiteral(ZORVIK_HELP_BUILD_DIR);

// The title of the manual's first page, shown in the help window's caption.
const QString kIndexTitle = QStringLiteral("Zorvik User Manual");

QStringList filesUnder(const QString& folder, const QStringList& patterns = {}) {
    QStringList files;
    QDirIterator it(folder, patterns, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << QDir(folder).relativeFilePath(it.next());
    files.sort();
    return files;
}

// The files of the manual in the repository: everything in help/ but its build file.
QStringList manualFiles() {
    QStringList files = filesUnder(kSourceFolder);
    files.removeAll(QStringLiteral("CMakeLists.txt"));
    return files;
}

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::string lines(const QStringList& list) {
    return list.join('\n').toStdString();
}

// What the help window's browser made of a page: the targets of its links and its pictures.
struct BrowserView {
    QSet<QString> links;
    QSet<QString> pictures;
};

BrowserView browserView(const QTextDocument& document) {
    BrowserView view;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            if (format.isImageFormat())
                view.pictures.insert(format.toImageFormat().name());
            else if (format.isAnchor() && !format.anchorHref().isEmpty())
                view.links.insert(format.anchorHref());
        }
    }
    return view;
}

class HelpManualTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { report_ = walkManual(kBuiltFolder); }
    static const ManualReport& report() { return report_; }

private:
    static ManualReport report_;
};

ManualReport HelpManualTest::report_;

class HelpButtonTest : public ::testing::Test {
protected:
    void SetUp() override {
        MessageBoxes::setInterceptor([](const MessageRecord& box) {
            ADD_FAILURE() << "unexpected message box: " << box.text.toStdString();
            return QMessageBox::Ok;
        });
        shared =
            std::make_unique<ProgramServices>(serial, ports, [](const QString&) { return false; });
        MainWindowServices services;
        shared->handTo(services);
        services.programFolder = kProgramFolder;
        services.settingsPath = QString(); // the build folder's settings stay untouched
        services.splashMinDisplayMs = 0;
        window = std::make_unique<frmMain>(services);
        window->Form_Load();
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }
    void TearDown() override {
        window->close();
        window.reset();
        MessageBoxes::setInterceptor({});
    }

    FakeSerialLink serial;
    PortMap ports;
    std::unique_ptr<ProgramServices> shared;
    std::unique_ptr<frmMain> window;
};

} // namespace

TEST_F(HelpButtonTest, HelpFileIsTheIndexPageInTheHelpFolderBesideTheBuiltProgram) {
    EXPECT_EQ(window->helpFile(), QDir(kProgramFolder).filePath("Help/index.html"));
    EXPECT_TRUE(QFileInfo(window->helpFile()).isFile()) << window->helpFile().toStdString();
    EXPECT_EQ(QDir::cleanPath(kBuiltFolder), QDir(kProgramFolder).filePath("Help"));
}

TEST_F(HelpButtonTest, ReleasingHelpShowsTheFirstPageOfTheManualInTheHelpWindow) {
    QTest::mouseClick(window->panel().CWBHelp, Qt::LeftButton);

    auto* help = window->findChild<HelpWindow*>();
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([help] { return help->isVisible(); }, 5000));
    EXPECT_EQ(help->browser()->source(), QUrl::fromLocalFile(window->helpFile()));
    EXPECT_EQ(help->browser()->documentTitle(), kIndexTitle);
    EXPECT_EQ(help->windowTitle(), kIndexTitle + " - Help");
}

TEST_F(HelpManualTest, EveryLinkAnchorAndPictureOfEveryPageResolvesInsideTheManual) {
    EXPECT_TRUE(report().problems.isEmpty()) << lines(report().problems);
    EXPECT_EQ(report().styleSheets, QStringList{"style.css"});
}

TEST_F(HelpManualTest, EveryPageOfTheManualIsReachableFromTheIndex) {
    QStringList reached = report().pages;
    reached.sort();
    EXPECT_EQ(reached, filesUnder(kSourceFolder, {"*.html"}));
    EXPECT_EQ(report().pages.value(0), "index.html");
}

TEST_F(HelpManualTest, EveryPageLeadsBackToTheContents) {
    for (const QString& page : report().pages) {
        EXPECT_TRUE(report().linksOf.value(page).contains("index.html")) << page.toStdString();
    }
}

TEST_F(HelpManualTest, EveryPageHasTheTitleOfItsHelpWindowCaption) {
    EXPECT_EQ(report().titles.value("index.html"), kIndexTitle);
    for (const QString& page : report().pages)
        EXPECT_FALSE(report().titles.value(page).isEmpty()) << page.toStdString();
}

TEST_F(HelpManualTest, EveryPictureInTheImagesFolderIsShownOnSomePage) {
    QStringList shown = report().pictures;
    shown.sort();
    QStringList inFolder;
    for (const QString& file : filesUnder(kSourceFolder + "/images"))
        inFolder << "images/" + file;
    EXPECT_EQ(shown, inFolder);
}

TEST_F(HelpManualTest, EveryFileOfTheManualArrivesUnchangedBesideTheBuiltProgram) {
    const QStringList files = manualFiles();
    ASSERT_TRUE(files.contains("index.html"));
    for (const QString& file : files) {
        const QString copy = QDir(kBuiltFolder).filePath(file);
        ASSERT_TRUE(QFileInfo(copy).isFile())
            << file.toStdString() << " is not in " << copy.toStdString();
        EXPECT_TRUE(bytesOf(copy) == bytesOf(QDir(kSourceFolder).filePath(file)))
            << file.toStdString() << ": the copy beside the program is out of date";
    }
}

TEST_F(HelpManualTest, TheHelpWindowSeesTheSameLinksAndPicturesAsTheFiles) {
    HelpWindow window;
    for (const QString& page : report().pages) {
        window.showFile(QDir(kBuiltFolder).filePath(page));
        const QTextDocument& document = *window.browser()->document();
        EXPECT_EQ(window.browser()->documentTitle(), report().titles.value(page))
            << page.toStdString();
        const BrowserView view = browserView(document);
        const QStringList links = report().linksOf.value(page);
        const QStringList pictures = report().picturesOf.value(page);
        EXPECT_EQ(view.links, QSet<QString>(links.begin(), links.end())) << page.toStdString();
        EXPECT_EQ(view.pictures, QSet<QString>(pictures.begin(), pictures.end()))
            << page.toStdString();
    }
}

} // namespace zorvik::test
