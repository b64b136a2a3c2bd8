// Where the header, the picture and the footer go on a printed page, and drawing them there.
#pragma once

#include <QImage>
#include <QRectF>
#include <QSizeF>
#include <QString>

class QPainter;

namespace zorvik {

/// Everything that decides the look of a page. Lengths are in inches.
struct PageContent {
    QSizeF paper;                                    ///< the whole sheet
    double left = 0, right = 0, top = 0, bottom = 0; ///< margins from the sheet's edges
    QString header;
    QString footer;
    double scalePercent = 100; ///< picture size in per cent of its natural size
    bool fitToPage = false;    ///< stretch the picture to the space inside the margins
    QImage picture;
    double pictureDpiX = 96; ///< resolution of the screen the picture was taken on
    double pictureDpiY = 96;
};

/// The three boxes of a composed page, in inches from the sheet's top-left corner.
struct PageGeometry {
    QRectF header;  ///< empty when there is no header text
    QRectF footer;  ///< empty when there is no footer text
    QRectF picture; ///< empty when there is no picture
};

/// Page composition:
/// - the header line sits just above the top margin and the footer line just below the bottom
///   margin, centred between the side margins, so the margins bound the picture exactly; a margin
///   too small for its line pushes the line onto the sheet and the picture away from it;
/// - the picture's natural size is its size on the screen it was taken on (pixels at that
///   screen's resolution); it is printed at the scale, centred between the side margins and at
///   the top of the space inside the margins; a picture that would not fit inside the margins is
///   shrunk, keeping its proportions, until it does;
/// - "fit to page" stretches the picture (proportions kept) to the space inside the margins.
class PageComposer {
public:
    /// Header and footer: 10 point text in the program's font.
    static constexpr double kTextPointSize = 10.0;
    /// Space between a header or footer line and the margin it sits on.
    static constexpr double kTextGapInches = 0.08;

    /// Lays the page out; `lineHeightInches` is the height of one header or footer line.
    static PageGeometry layout(const PageContent& content, double lineHeightInches);

    /// Draws the page on `painter`, whose device has the given resolution and whose origin is the
    /// sheet's top-left corner. Returns the geometry used.
    static PageGeometry paint(QPainter& painter, const PageContent& content, double dpiX,
                              double dpiY);
};

} // namespace zorvik
