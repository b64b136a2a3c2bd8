// cHTMLHelp and the help window: the default page, links, Back/Forward/Home, images, web links
// to the desktop browser, the "not found" page and the one reused window.
#include "support/HelpWindow.h"
#include "support/MessageBox.h"
#include "support/cHTMLHelp.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolButton>
#include <gtest/gtest.h>

namespace zorvik::test {

// Stands in for the desktop browser: records the web addresses handed to it.
class UrlRecorder : public QObject {
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened.append(url); }
};

namespace {

void write(const QString& path, const QByteArray& text) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

// Clicks the link whose text is `text` in the browser.
void clickLink(QTextBrowser* browser, const QString& text) {
    QTextCursor cursor = browser->document()->find(text);
    ASSERT_FALSE(cursor.isNull()) << text.toStdString();
    cursor.setPosition(cursor.selectionStart() + 2);
    const QPoint spot = browser->cursorRect(cursor).center();
    QTest::mouseClick(browser->viewport(), Qt::LeftButton, {}, spot);
}

class HelpTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        QImage red(40, 40, QImage::Format_RGB32);
        red.fill(Qt::red);
        ASSERT_TRUE(red.save(dir.filePath("red.png")));
        write(dir.filePath("index.html"),
              "<html><head><title>Zorvik manual</title></head><body><h1>Contents</h1>"
              "<p><a href=\"page2.html\">Second page</a></p>"
              "<p><a href=\"https://example.org/probe\">Maker site</a></p>"
              "<p><a href=\"gone.html\">Broken link</a></p>"
              "<p><img src=\"red.png\"></p></body></html>");
        write(dir.filePath("page2.html"),
              "<html><head><title>Cursors</title></head><body><h1>Cursors</h1>"
              "<p><a href=\"index.html\">Back to contents</a></p></body></html>");
        caller.resize(400, 300);
        MessageBoxes::setInterceptor([](const MessageRecord& box) {
            ADD_FAILURE() << "unexpected message box: " << box.text.toStdString();
            return QMessageBox::Ok;
        });
    }
    void TearDown() override { MessageBoxes::setInterceptor({}); }

    HelpWindow* open(const QString& file) {
        help.DisplayHelp(&caller, file);
        HelpWindow* window = help.helpWindow();
        if (window) {
            EXPECT_TRUE(QTest::qWaitForWindowExposed(window));
        }
        return window;
    }

    QTemporaryDir dir;
    QWidget caller;
    cHTMLHelp help;
};

TEST_F(HelpTest, DisplayHelpOpensTheFileAtItsDefaultPage) {
    HelpWindow* window = open(dir.filePath("index.html"));
    ASSERT_NE(window, nullptr);

    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->isModal());
    EXPECT_EQ(window->parentWidget(), &caller);
    EXPECT_EQ(window->browser()->source(), QUrl::fromLocalFile(dir.filePath("index.html")));
    EXPECT_TRUE(window->browser()->toPlainText().startsWith("Contents"));
    EXPECT_EQ(window->windowTitle(), "Zorvik manual - Help");
    EXPECT_FALSE(window->backButton()->isEnabled());
}

TEST_F(HelpTest, LinkInsideTheManualOpensInTheWindowAndBackForwardHomeNavigate) {
    HelpWindow* window = open(dir.filePath("index.html"));
    ASSERT_NE(window, nullptr);
    QTextBrowser* browser = window->browser();

    clickLink(browser, "Second page");
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return browser->source() == QUrl::fromLocalFile(dir.filePath("page2.html")); },
        5000));
    EXPECT_TRUE(browser->toPlainText().startsWith("Cursors"));
    EXPECT_EQ(window->windowTitle(), "Cursors - Help");
    EXPECT_TRUE(window->backButton()->isEnabled());

    window->backButton()->click();
    EXPECT_EQ(browser->source(), QUrl::fromLocalFile(dir.filePath("index.html")));
    EXPECT_TRUE(window->forwardButton()->isEnabled());
    window->forwardButton()->click();
    EXPECT_EQ(browser->source(), QUrl::fromLocalFile(dir.filePath("page2.html")));
    window->homeButton()->click();
    EXPECT_EQ(browser->source(), QUrl::fromLocalFile(dir.filePath("index.html")));
}

TEST_F(HelpTest, ImagesOfTheManualShow) {
    HelpWindow* window = open(dir.filePath("index.html"));
    ASSERT_NE(window, nullptr);
    const QImage picture = window->browser()->viewport()->grab().toImage();
    int red = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            red += QColor(picture.pixel(x, y)) == QColor(Qt::red) ? 1 : 0;
    EXPECT_GE(red, 40 * 40 * 9 / 10);
}

TEST_F(HelpTest, WebLinkOpensInTheDesktopBrowserAndThePageStays) {
    UrlRecorder browserStandIn;
    QDesktopServices::setUrlHandler("https", &browserStandIn, "open");
    HelpWindow* window = open(dir.filePath("index.html"));
    ASSERT_NE(window, nullptr);

    clickLink(window->browser(), "Maker site");
    ASSERT_TRUE(QTest::qWaitFor([&] { return browserStandIn.opened.size() == 1; }, 5000));
    QDesktopServices::unsetUrlHandler("https");

    EXPECT_EQ(browserStandIn.opened.front(), QUrl("https://example.org/probe"));
    EXPECT_EQ(window->browser()->source(), QUrl::fromLocalFile(dir.filePath("index.html")));
}

TEST_F(HelpTest, MissingHelpFileShowsTheNotFoundPageInTheWindow) {
    const QString missing = dir.filePath("Help/index.html");
    HelpWindow* window = open(missing);
    ASSERT_NE(window, nullptr);

    EXPECT_TRUE(window->isVisible());
    const QString text = window->browser()->toPlainText();
    EXPECT_TRUE(text.startsWith("Help not found")) << text.toStdString();
    EXPECT_TRUE(text.contains(QFileInfo(missing).absoluteFilePath()));
    EXPECT_EQ(window->windowTitle(), "Help not found - Help");
}

TEST_F(HelpTest, BrokenLinkShowsTheNotFoundPageAndBackStillWorks) {
    HelpWindow* window = open(dir.filePath("index.html"));
    ASSERT_NE(window, nullptr);
    clickLink(window->browser(), "Broken link");
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return window->browser()->toPlainText().startsWith("Help not found"); }, 5000));
    window->backButton()->click();
    EXPECT_TRUE(window->browser()->toPlainText().startsWith("Contents"));
}

TEST_F(HelpTest, RepeatedCallsReuseOneWindowAndBringItBack) {
    HelpWindow* first = open(dir.filePath("index.html"));
    clickLink(first->browser(), "Second page");
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            return first->browser()->source() == QUrl::fromLocalFile(dir.filePath("page2.html"));
        },
        5000));
    first->close();
    ASSERT_FALSE(first->isVisible());

    HelpWindow* second = open(dir.filePath("index.html"));
    EXPECT_EQ(second, first);
    EXPECT_TRUE(second->isVisible());
    EXPECT_EQ(second->browser()->source(), QUrl::fromLocalFile(dir.filePath("index.html")));
    EXPECT_EQ(caller.findChildren<HelpWindow*>().size(), 1);

    cHTMLHelp another; // a new launcher finds the caller's window too
    another.DisplayHelp(&caller, dir.filePath("index.html"));
    EXPECT_EQ(another.helpWindow(), first);
}

// A picture wider than the window is shown at the window's width, in proportion, so the page
// never needs a horizontal scroll bar; a smaller picture keeps its size.
TEST_F(HelpTest, PicturesWiderThanTheWindowScaleDownToFit) {
    QImage wide(800, 400, QImage::Format_RGB32);
    wide.fill(Qt::blue);
    ASSERT_TRUE(wide.save(dir.filePath("wide.png")));
    write(dir.filePath("wide.html"), "<html><head><title>Wide</title></head><body>"
                                     "<p><img src=\"wide.png\"></p><p><img src=\"red.png\"></p>"
                                     "</body></html>");
    caller.resize(400, 300);
    HelpWindow* window = open(dir.filePath("wide.html"));
    ASSERT_NE(window, nullptr);
    window->resize(520, 600);
    QTextBrowser* browser = window->browser();
    const auto imageWidths = [&] {
        QList<qreal> widths;
        for (QTextBlock b = browser->document()->begin(); b.isValid(); b = b.next()) {
            for (auto it = b.begin(); !it.atEnd(); ++it) {
                if (it.fragment().charFormat().isImageFormat())
                    widths << it.fragment().charFormat().toImageFormat().width();
            }
        }
        return widths;
    };
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            const QList<qreal> w = imageWidths();
            return w.size() == 2 && w[0] > 0 && w[0] <= browser->viewport()->width();
        },
        5000));
    EXPECT_EQ(imageWidths()[1], 40);
    EXPECT_EQ(browser->horizontalScrollBar()->maximum(), 0);
    // Wider again, the picture grows back to its own size and no further.
    window->resize(1200, 600);
    ASSERT_TRUE(QTest::qWaitFor([&] { return imageWidths()[0] == 800; }, 5000));
    EXPECT_EQ(browser->horizontalScrollBar()->maximum(), 0);
}

// The search field finds a word on every page of the manual; the results link to the pages,
// Back returns to them, and a page opened from them shows the word selected.
TEST_F(HelpTest, SearchFindsAWordAcrossThePagesOfTheManual) {
    write(dir.filePath("page3.html"),
          "<html><head><title>Trigger</title></head><body><h1>Trigger</h1>"
          "<p>The trigger level follows the cursors. Cursors, cursors.</p></body></html>");
    HelpWindow* window = open(dir.filePath("index.html"));
    ASSERT_NE(window, nullptr);
    QTextBrowser* browser = window->browser();
    window->searchField()->setText("  CURSORS  ");
    QTest::keyClick(window->searchField(), Qt::Key_Return);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return window->windowTitle() == "Search: CURSORS - Help"; }, 5000))
        << window->windowTitle().toStdString();
    const QString results = browser->toPlainText();
    EXPECT_TRUE(results.contains("2 pages hold these words.")) << results.toStdString();
    // Most occurrences first: "Trigger" holds the word three times, "Cursors" twice.
    EXPECT_LT(results.indexOf("Trigger"), results.indexOf("Cursors\n"));
    EXPECT_FALSE(results.contains("Zorvik manual"));

    clickLink(browser, "Trigger");
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return browser->source() == QUrl::fromLocalFile(dir.filePath("page3.html")); },
        5000));
    EXPECT_EQ(browser->textCursor().selectedText().toLower(), "cursors");
    window->backButton()->click();
    EXPECT_EQ(window->windowTitle(), "Search: CURSORS - Help");

    // Every word must be on a page; nothing found says so.
    window->search("cursors trigger");
    EXPECT_TRUE(browser->toPlainText().contains("1 page holds these words."));
    window->search("oscillograph");
    EXPECT_TRUE(browser->toPlainText().contains("No page of the manual holds all of these words."));
    // A blank search changes nothing.
    const QUrl before = browser->source();
    window->search("   ");
    EXPECT_EQ(browser->source(), before);
}

TEST_F(HelpTest, ShowPageOpensAPageAndKeepsTheHomePage) {
    HelpWindow* window = open(dir.filePath("index.html"));
    ASSERT_NE(window, nullptr);
    window->showPage("page2.html");
    EXPECT_EQ(window->browser()->source(), QUrl::fromLocalFile(dir.filePath("page2.html")));
    EXPECT_EQ(window->home(), QUrl::fromLocalFile(dir.filePath("index.html")));
    window->homeButton()->click();
    EXPECT_EQ(window->browser()->source(), QUrl::fromLocalFile(dir.filePath("index.html")));
}

TEST(HelpWithoutCaller, UsesAWindowOwnedByTheLauncher) {
    QTemporaryDir dir;
    write(dir.filePath("index.html"), "<html><body><h1>Contents</h1></body></html>");
    QPointer<HelpWindow> window;
    {
        cHTMLHelp help;
        help.DisplayHelp(nullptr, dir.filePath("index.html"));
        window = help.helpWindow();
        ASSERT_FALSE(window.isNull());
        EXPECT_EQ(window->parentWidget(), nullptr);
        help.DisplayHelp(nullptr, dir.filePath("index.html"));
        EXPECT_EQ(help.helpWindow(), window.data());
    }
    EXPECT_TRUE(window.isNull());
}

} // namespace
} // namespace zorvik::test

#include "HelpWindowTest.moc"
