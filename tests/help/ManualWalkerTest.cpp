// The manual walker on small manuals made for the test: it follows links in reading order and
// reports every kind of broken link, anchor and picture, so the checks of the real manual can
// fail.
#include "help/ManualWalker.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace zorvik::test {

namespace {

void write(const QString& path, const QByteArray& text) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

QByteArray page(const QByteArray& title, const QByteArray& body) {
    return "<html><head><title>" + title +
           "</title><link rel=\"stylesheet\" href=\"style.css\"></head><body>" + body +
           "</body></html>";
}

class ManualWalkerTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        write(dir.filePath("style.css"), "body { color: black; }");
        QImage picture(8, 8, QImage::Format_RGB32);
        picture.fill(Qt::green);
        ASSERT_TRUE(QDir(dir.path()).mkpath("images"));
        ASSERT_TRUE(picture.save(dir.filePath("images/green.png")));
    }
    QString path(const QString& name) const { return dir.filePath(name); }

    QTemporaryDir dir;
};

} // namespace

TEST_F(ManualWalkerTest, SoundManualIsReadInLinkOrderWithoutProblems) {
    write(path("index.html"), page("Contents", "<a href=\"b.html\">B</a> <a href='a.html#top'>A</a>"
                                               "<img src=\"images/green.png\">"));
    write(path("a.html"), page("A", "<h1><a name=\"top\">A</a></h1><a href=\"#top\">up</a>"));
    write(path("b.html"), page("B", "<h2 id=\"x\">B</h2><a href=\"index.html\">contents</a>"));
    write(path("orphan.html"), page("Orphan", ""));

    const ManualReport report = walkManual(dir.path());

    EXPECT_EQ(report.problems, QStringList());
    EXPECT_EQ(report.pages, (QStringList{"index.html", "b.html", "a.html"}));
    EXPECT_EQ(report.pictures, QStringList{"images/green.png"});
    EXPECT_EQ(report.styleSheets, QStringList{"style.css"});
    EXPECT_EQ(report.titles.value("b.html"), "B");
    EXPECT_EQ(report.linksOf.value("index.html"), (QStringList{"b.html", "a.html#top"}));
    EXPECT_EQ(report.picturesOf.value("index.html"), QStringList{"images/green.png"});
}

TEST_F(ManualWalkerTest, EveryKindOfBrokenLinkAndPictureIsReported) {
    write(path("not-a-picture.png"), "plain text");
    write(path("index.html"),
          page("Contents", "<a href=\"missing.html\">1</a>"
                           "<a href=\"a.html#nowhere\">2</a>"
                           "<a href=\"../outside.html\">3</a>"
                           "<a href=\"https://example.org/\">4</a>"
                           "<a href=\"/etc/hosts\">5</a>"
                           "<a href=\"\">6</a>"
                           "<img src=\"images/missing.png\">"
                           "<img src=\"not-a-picture.png\">"
                           "<!-- <a href=\"commented-out.html\">not a link</a> -->"
                           "<a href=\"a.html\">7</a>"));
    write(path("a.html"), "<html><body><a name=\"somewhere\"></a></body></html>");

    const ManualReport report = walkManual(dir.path());

    EXPECT_EQ(report.problems,
              (QStringList{
                  "index.html: \"missing.html\" names a file that does not exist",
                  "index.html: \"a.html#nowhere\" names an anchor that a.html does not have",
                  "index.html: \"../outside.html\" leads outside the manual",
                  "index.html: \"https://example.org/\" leads outside the manual",
                  "index.html: \"/etc/hosts\" leads outside the manual",
                  "index.html: a link or picture has an empty address",
                  "index.html: \"images/missing.png\" names a file that does not exist",
                  "index.html: \"not-a-picture.png\" is not a picture",
                  "a.html: the page has no title",
              }));
    EXPECT_EQ(report.pages, (QStringList{"index.html", "a.html"}));
}

TEST_F(ManualWalkerTest, MissingFirstPageIsReported) {
    const ManualReport report = walkManual(dir.path());
    EXPECT_EQ(report.problems, QStringList{"index.html: the first page does not exist"});
    EXPECT_TRUE(report.pages.isEmpty());
}

TEST_F(ManualWalkerTest, AnchorsAreNamedAnchorsAndIdsOutsideComments) {
    EXPECT_EQ(anchorNames("<h2><a name=\"power\">POWER</a></h2><p id='store'>x</p>"
                          "<!-- <a name=\"hidden\"></a> --><a href=\"#power\">y</a>"),
              (QStringList{"power", "store"}));
}

} // namespace zorvik::test
