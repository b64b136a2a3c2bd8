// The pictures of the splash screen and About box: the dark instrument backdrop with its
// graticule and trace, and the program's emblem used when the calling window has no icon.
#pragma once

#include <QPixmap>
#include <QRect>

class QPainter;

namespace zorvik {

/// Paints the backdrop: an instrument screen (graticule and a live-looking trace in `trace`)
/// over the upper band down to `cut`, and a plainer panel below it.
void paintSplashBackdrop(QPainter& painter, const QRect& whole, int cut, const QRect& trace);

/// The program's emblem: a small scope screen with a trace, `size` pixels square.
QPixmap scopeEmblem(int size);

} // namespace zorvik
