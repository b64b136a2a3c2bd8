// The manual walker: reads pages with regular expressions, resolves links and pictures against
// the files of the manual's folder.
#include "help/ManualWalker.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>
#include <QSet>
#include <QUrl>

namespace zorvik::test {

namespace {

QString readText(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

// Comments are not part of what a reader sees.
QString withoutComments(QString html) {
    static const QRegularExpression comment(QStringLiteral("<!--.*?-->"),
                                            QRegularExpression::DotMatchesEverythingOption);
    return html.remove(comment);
}

// The attributes of one tag, names in lower case, values with &amp; decoded.
QMap<QString, QString> attributesOf(const QString& tag) {
    static const QRegularExpression attribute(
        QStringLiteral(R"re(\b([A-Za-z-]+)\s*=\s*(?:"([^"]*)"|'([^']*)'|([^\s"'>]+)))re"));
    QMap<QString, QString> attributes;
    auto it = attribute.globalMatch(tag);
    while (it.hasNext()) {
        const QRegularExpressionMatch m = it.next();
        QString value = m.captured(2);
        if (value.isNull())
            value = m.captured(3);
        if (value.isNull())
            value = m.captured(4);
        value.replace(QStringLiteral("&amp;"), QStringLiteral("&"));
        attributes.insert(m.captured(1).toLower(), value);
    }
    return attributes;
}

struct Tag {
    QString name;
    QMap<QString, QString> attributes;
};

QList<Tag> tagsOf(const QString& html) {
    static const QRegularExpression tag(QStringLiteral(R"(<([A-Za-z][A-Za-z0-9]*)\b([^>]*)>)"));
    QList<Tag> tags;
    auto it = tag.globalMatch(withoutComments(html));
    while (it.hasNext()) {
        const QRegularExpressionMatch m = it.next();
        tags.append(Tag{m.captured(1).toLower(), attributesOf(m.captured(2))});
    }
    return tags;
}

QString titleOf(const QString& html) {
    static const QRegularExpression title(QStringLiteral("<title>(.*?)</title>"),
                                          QRegularExpression::DotMatchesEverythingOption |
                                              QRegularExpression::CaseInsensitiveOption);
    return title.match(html).captured(1).simplified();
}

class Walk {
public:
    explicit Walk(const QString& folder) : root_(QFileInfo(folder).absoluteFilePath()) {}

    ManualReport run(const QString& firstPage) {
        if (!QFileInfo(root_.filePath(firstPage)).isFile()) {
            report_.problems << firstPage + ": the first page does not exist";
            return report_;
        }
        queue_ << firstPage;
        seen_.insert(firstPage);
        while (!queue_.isEmpty())
            readPage(queue_.takeFirst());
        return report_;
    }

private:
    void readPage(const QString& page) {
        report_.pages << page;
        const QString html = readText(root_.filePath(page));
        const QString title = titleOf(html);
        report_.titles.insert(page, title);
        if (title.isEmpty())
            report_.problems << page + ": the page has no title";
        for (const Tag& tag : tagsOf(html)) {
            if (tag.name == QLatin1String("a") && tag.attributes.contains("href")) {
                report_.linksOf[page] << tag.attributes.value("href");
                checkLink(page, tag.attributes.value("href"));
            } else if (tag.name == QLatin1String("link") && tag.attributes.contains("href")) {
                checkFile(page, tag.attributes.value("href"), report_.styleSheets);
            } else if (tag.name == QLatin1String("img")) {
                report_.picturesOf[page] << tag.attributes.value("src");
                checkPicture(page, tag.attributes.value("src"));
            }
        }
    }

    // The file that `path`, written on `page`, names: relative to the manual's folder, or
    // empty (with a problem reported) when it lies outside the folder or does not exist.
    QString resolve(const QString& page, const QString& reference, const QString& path) {
        const QUrl url(reference);
        if (reference.isEmpty()) {
            report_.problems << page + ": a link or picture has an empty address";
            return {};
        }
        if (!url.scheme().isEmpty() || QDir::isAbsolutePath(path)) {
            report_.problems << page + ": \"" + reference + "\" leads outside the manual";
            return {};
        }
        const QString pageFolder = QFileInfo(root_.filePath(page)).absolutePath();
        const QString target = QDir::cleanPath(pageFolder + '/' + path);
        const QString relative = root_.relativeFilePath(target);
        if (relative.startsWith(QLatin1String("../")) || relative == QLatin1String("..")) {
            report_.problems << page + ": \"" + reference + "\" leads outside the manual";
            return {};
        }
        if (!QFileInfo(target).isFile()) {
            report_.problems << page + ": \"" + reference + "\" names a file that does not exist";
            return {};
        }
        return relative;
    }

    void checkLink(const QString& page, const QString& href) {
        const QUrl url(href);
        const QString path = url.path(QUrl::FullyDecoded);
        const QString target = path.isEmpty() && !href.isEmpty() && url.scheme().isEmpty()
                                   ? page
                                   : resolve(page, href, path);
        if (target.isEmpty())
            return;
        const bool isPage = target.endsWith(QLatin1String(".html"), Qt::CaseInsensitive);
        if (isPage && !seen_.contains(target)) {
            seen_.insert(target);
            queue_ << target;
        }
        const QString fragment = url.fragment(QUrl::FullyDecoded);
        if (url.hasFragment() && (!isPage || !anchorsOf(target).contains(fragment)))
            report_.problems << page + ": \"" + href + "\" names an anchor that " + target +
                                    " does not have";
    }

    void checkFile(const QString& page, const QString& reference, QStringList& list) {
        const QString target = resolve(page, reference, QUrl(reference).path(QUrl::FullyDecoded));
        if (!target.isEmpty() && !list.contains(target))
            list << target;
    }

    void checkPicture(const QString& page, const QString& src) {
        const QString target = resolve(page, src, QUrl(src).path(QUrl::FullyDecoded));
        if (target.isEmpty())
            return;
        if (QImage(root_.filePath(target)).isNull())
            report_.problems << page + ": \"" + src + "\" is not a picture";
        else if (!report_.pictures.contains(target))
            report_.pictures << target;
    }

    const QStringList& anchorsOf(const QString& page) {
        if (!anchors_.contains(page))
            anchors_.insert(page, anchorNames(readText(root_.filePath(page))));
        return anchors_[page];
    }

    QDir root_;
    ManualReport report_;
    QStringList queue_;
    QSet<QString> seen_;
    QMap<QString, QStringList> anchors_;
};

} // namespace

QStringList anchorNames(const QString& html) {
    QStringList names;
    for (const Tag& tag : tagsOf(html)) {
        if (tag.name == QLatin1String("a") && tag.attributes.contains("name"))
            names << tag.attributes.value("name");
        if (tag.attributes.contains("id"))
            names << tag.attributes.value("id");
    }
    return names;
}

ManualReport walkManual(const QString& folder, const QString& firstPage) {
    return Walk(folder).run(firstPage);
}

} // namespace zorvik::test
