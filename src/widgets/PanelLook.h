// Colours and drawing helpers shared by the front-panel widgets: focus frame, lamps, metal caps.
#pragma once

#include <QColor>
#include <QRectF>
#include <QString>

class QPainter;
class QWidget;

namespace zorvik {

/// The look of the dark instrument front panel, in one place so that every widget agrees.
namespace PanelLook {

QColor panelColor();   ///< the panel's background
QColor textColor();    ///< captions and active labels
QColor dimTextColor(); ///< inactive labels
QColor disabledTextColor();
QColor scaleColor(); ///< tick marks and scale lines
QColor focusColor(); ///< the keyboard focus frame

/// Draws the keyboard focus frame just inside `rect` (a rounded, bright outline).
void drawFocusFrame(QPainter& painter, const QRectF& rect);

/// Draws a round lamp filling `rect`: a glowing radial gradient of `onColor` when lit, a dark
/// glass look (a shade of `onColor`) when out.
void drawRoundLamp(QPainter& painter, const QRectF& rect, const QColor& onColor, bool lit,
                   bool enabled = true);

/// Draws an oblong lamp (a lit window) with an optional centred text, same lit/out looks.
void drawBarLamp(QPainter& painter, const QRectF& rect, const QColor& onColor, bool lit,
                 const QString& text = QString(), bool enabled = true);

/// Draws a brushed-metal rectangular cap (slide thumbs, button faces).
void drawMetalCap(QPainter& painter, const QRectF& rect, bool sunken = false);

/// A round scale step (1, 2, 2.5 or 5 times a power of ten) that puts marks at least
/// `minSpacing` pixels apart on a scale of `span` value units drawn over `pixels` pixels.
double scaleStep(double span, double pixels, double minSpacing);

/// A scale number as the panel prints it ("-4", "2.5", "0").
QString scaleNumber(double value, double step);

/// A plain colour word for a lamp colour ("red", "yellow", "green", ...), for screen readers.
QString colorWord(const QColor& color);

/// Prepares a widget to be a focusable panel control (Tab and click focus).
void setUpControl(QWidget* widget);

} // namespace PanelLook
} // namespace zorvik
