// Searching the user manual: every page of the help folder that holds all the words asked for.
#pragma once

#include <QList>
#include <QString>
#include <QUrl>

namespace zorvik {

/// One page of the manual that holds every word of a search.
struct HelpHit {
    QString file;    ///< absolute path of the page
    QString title;   ///< the page's title
    QString snippet; ///< plain text around the first word found
    int count = 0;   ///< how often the words occur on the page
};

namespace HelpSearch {

/// The words of a search: split at blanks, without empty ones.
QStringList words(const QString& query);

/// The pages (*.html) of `folder` whose text holds every word of `query`, case ignored; most
/// occurrences first, then by title. No words, no pages.
QList<HelpHit> search(const QString& folder, const QString& query);

/// The results of searching `folder` for `query` as a page of the manual, with a link to each
/// page found.
QString resultsPage(const QString& folder, const QString& query);

/// Address of the results page for `query`, which the help window shows like any other page
/// (Back and Forward included).
QUrl resultsUrl(const QString& query);
/// The query of a results page address; empty for any other address.
QString queryOf(const QUrl& url);

} // namespace HelpSearch

} // namespace zorvik
