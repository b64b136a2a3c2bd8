#include "support/HelpSearch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QTextDocument>
#include <QUrlQuery>
#include <algorithm>

namespace zorvik::HelpSearch {

namespace {

constexpr const char* kScheme = "zorvik-search";

struct PageText {
    QDateTime modified;
    QString title;
    QString text;
};

// The text of a page as a reader sees it, read again only when the file changes.
const PageText& pageText(const QString& path) {
    static QHash<QString, PageText> cache;
    const QFileInfo info(path);
    auto it = cache.find(path);
    if (it == cache.end() || it->modified != info.lastModified()) {
        PageText page;
        page.modified = info.lastModified();
        QFile file(path);
        if (file.open(QIODevice::ReadOnly)) {
            QTextDocument document;
            document.setHtml(QString::fromUtf8(file.readAll()));
            page.title = document.metaInformation(QTextDocument::DocumentTitle);
            page.text = document.toPlainText().simplified();
        }
        if (page.title.isEmpty())
            page.title = info.completeBaseName();
        it = cache.insert(path, page);
    }
    return *it;
}

QString snippetAround(const QString& text, qsizetype at, qsizetype length) {
    constexpr qsizetype kContext = 70;
    const qsizetype from = std::max<qsizetype>(0, at - kContext);
    const qsizetype to = std::min(text.size(), at + length + kContext);
    QString snippet = text.mid(from, to - from);
    if (from > 0)
        snippet.prepend(QStringLiteral("... "));
    if (to < text.size())
        snippet.append(QStringLiteral(" ..."));
    return snippet;
}

} // namespace

QStringList words(const QString& query) {
    return query.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
}

QList<HelpHit> search(const QString& folder, const QString& query) {
    QList<HelpHit> hits;
    const QStringList wanted = words(query);
    if (wanted.isEmpty())
        return hits;
    const QDir dir(folder);
    for (const QString& name : dir.entryList({QStringLiteral("*.html")}, QDir::Files, QDir::Name)) {
        const QString path = dir.absoluteFilePath(name);
        const PageText& page = pageText(path);
        HelpHit hit;
        qsizetype first = -1;
        bool all = true;
        for (const QString& word : wanted) {
            const qsizetype count = page.text.count(word, Qt::CaseInsensitive);
            if (count == 0) {
                all = false;
                break;
            }
            hit.count += static_cast<int>(count);
            if (first < 0)
                first = page.text.indexOf(word, 0, Qt::CaseInsensitive);
        }
        if (!all)
            continue;
        hit.file = path;
        hit.title = page.title;
        hit.snippet = snippetAround(page.text, first, wanted.first().size());
        hits << hit;
    }
    std::stable_sort(hits.begin(), hits.end(), [](const HelpHit& a, const HelpHit& b) {
        return a.count != b.count ? a.count > b.count : a.title < b.title;
    });
    return hits;
}

QString resultsPage(const QString& folder, const QString& query) {
    const QList<HelpHit> hits = search(folder, query);
    const QString asked = words(query).join(QLatin1Char(' ')).toHtmlEscaped();
    QString html = QStringLiteral("<html><head><title>Search: %1</title></head><body>"
                                  "<h2>Search: %1</h2>")
                       .arg(asked);
    if (hits.isEmpty()) {
        html += QStringLiteral("<p>No page of the manual holds all of these words. Fewer or "
                               "shorter words find more.</p>");
    } else {
        html += hits.size() == 1
                    ? QStringLiteral("<p>1 page holds these words.</p>")
                    : QStringLiteral("<p>%1 pages hold these words.</p>").arg(hits.size());
        // The words in bold, all in one pass so that no word is looked for inside the marks.
        QStringList alternatives;
        for (const QString& word : words(query))
            alternatives << QRegularExpression::escape(word.toHtmlEscaped());
        const QRegularExpression match(QStringLiteral("(%1)").arg(alternatives.join('|')),
                                       QRegularExpression::CaseInsensitiveOption);
        for (const HelpHit& hit : hits) {
            QString snippet = hit.snippet.toHtmlEscaped();
            snippet.replace(match, QStringLiteral("<b>\\1</b>"));
            html += QStringLiteral("<p><a href=\"%1\">%2</a><br>%3</p>")
                        .arg(QUrl::fromLocalFile(hit.file).toString(QUrl::FullyEncoded),
                             hit.title.toHtmlEscaped(), snippet);
        }
    }
    return html + QStringLiteral("</body></html>");
}

QUrl resultsUrl(const QString& query) {
    QUrl url;
    url.setScheme(QString::fromLatin1(kScheme));
    url.setPath(QStringLiteral("results"));
    QUrlQuery q;
    q.addQueryItem(QStringLiteral("q"), query);
    url.setQuery(q);
    return url;
}

QString queryOf(const QUrl& url) {
    if (url.scheme() != QLatin1String(kScheme))
        return QString();
    return QUrlQuery(url).queryItemValue(QStringLiteral("q"), QUrl::FullyDecoded);
}

} // namespace zorvik::HelpSearch
