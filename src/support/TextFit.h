// Type that never outgrows its control: the elastic layout scales each control's font with the
// window's width and its rectangle with the window's height and width, so a window much wider
// than it is tall would ask for type too tall for the controls. Such a control is shown in the
// largest type, up to the size the layout asks for, at which all of its texts fit.
#pragma once

#include <QString>

class QFont;
class QWidget;

namespace zorvik {

/// A control that draws texts of its own (labels round a knob, numbers along a slide, a
/// caption on a key) and can tell whether they all fit its rectangle in its present font.
class FitsText {
public:
    virtual ~FitsText() = default;
    /// Whether every text the control draws lies inside its rectangle, clear of the others.
    virtual bool textFits() const = 0;
};

namespace TextFit {

/// Dynamic property of a label holding the widest text it will be given (for example
/// "-999.999 mSec" on a cursor readout), so that its type is chosen for that text too.
inline constexpr const char* kWidestTextProperty = "widestText";
/// The smallest type a control is given, in points, however little room it has.
inline constexpr double kSmallestPoints = 4.0;

/// Whether the texts of `w` fit its rectangle in its present font. A FitsText control answers
/// for itself; a label's text (and its widest text), a frame's caption (beside the top line,
/// above the frame's contents) and a button's caption are measured here; any other widget
/// draws no text of its own and fits.
bool fits(const QWidget& w);

/// Gives `w` the largest type, in steps of a quarter point from `points` down to
/// kSmallestPoints, at which its texts fit; `points` itself when they fit at that size.
/// Returns the size given.
double fitFont(QWidget& w, double points);

} // namespace TextFit

} // namespace zorvik
