// Pictures of the graph for documents and other programs: the graph alone (no panel around
// it) at a chosen size, in the screen's colours or in light colours for paper, as an image for
// the clipboard or a PNG file, or as an SVG drawing.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace zorvik {

class ScopeGraph;

enum class PictureTheme {
    Screen, ///< the graph's own colours
    Light,  ///< a white plot area with dark traces, for printing in documents
};

/// The graph `graph` shows, drawn anew at `size` (its traces, graticule and visible cursors)
/// in `theme`; the graph on screen is left as it is.
QImage graphImage(const ScopeGraph& graph, QSize size, PictureTheme theme);

/// Saves the picture to `path`, an SVG drawing when the name ends in ".svg" (any case), else a
/// PNG image. The file appears whole or not at all; on failure returns false with why in
/// `error`.
bool saveGraphPicture(const ScopeGraph& graph, QSize size, PictureTheme theme, const QString& path,
                      QString& error);

} // namespace zorvik
