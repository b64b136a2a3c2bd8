// Walks an HTML manual from its first page the way a reader clicking every link would, and
// reports what it reached and every link, anchor or picture that leads nowhere.
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace zorvik::test {

/// What one walk found. Paths are relative to the manual's folder ("images/x.png").
struct ManualReport {
    QStringList pages;                     ///< pages reached, in the order they were first reached
    QStringList pictures;                  ///< pictures shown by the pages reached
    QStringList styleSheets;               ///< style sheets the pages use
    QMap<QString, QString> titles;         ///< page -> its <title>
    QMap<QString, QStringList> linksOf;    ///< page -> the href of each of its links (<a>)
    QMap<QString, QStringList> picturesOf; ///< page -> the src of each of its pictures
    QStringList problems; ///< one line per link, anchor or picture that does not resolve
};

/// Reads every page reachable from `firstPage` in `folder`. A link resolves when it names a
/// file inside the folder (and, with "#name", an anchor `name="..."` or `id="..."` of that
/// page); a picture resolves when its file is an image that Qt can read. Links to anything
/// outside the folder (another folder, a web address) are problems: the manual has to work
/// on its own, offline, wherever it is installed. A page without a title is a problem too.
ManualReport walkManual(const QString& folder, const QString& firstPage = "index.html");

/// The anchor names (`name="..."` and `id="..."`) of an HTML text.
QStringList anchorNames(const QString& html);

} // namespace zorvik::test
