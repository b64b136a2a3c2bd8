#include "support/TextFit.h"

#include <QAbstractButton>
#include <QFontMetricsF>
#include <QGroupBox>
#include <QLabel>
#include <QVariant>
#include <cmath>

namespace zorvik::TextFit {

namespace {

bool lineFits(const QFontMetricsF& fm, const QString& text, const QRectF& room) {
    return text.isEmpty() || (fm.horizontalAdvance(text) <= room.width() + 0.01 &&
                              fm.height() <= room.height() + 0.01);
}

bool labelFits(const QLabel& label, const QFont& font) {
    const QFontMetricsF fm(font);
    const int m = label.margin();
    const QRectF room = QRectF(label.contentsRect()).adjusted(m, m, -m, -m);
    if (label.wordWrap() && !label.text().isEmpty()) {
        const QRectF used =
            fm.boundingRect(room, Qt::TextWordWrap | label.alignment(), label.text());
        return used.width() <= room.width() + 0.01 && used.height() <= room.height() + 0.01;
    }
    return lineFits(fm, label.text(), room) &&
           lineFits(fm, label.property(kWidestTextProperty).toString(), room);
}

// A frame's caption sits across its top line, indented by about half a line, and must stay
// above the controls inside the frame.
bool frameFits(const QGroupBox& frame, const QFont& font) {
    if (frame.title().isEmpty())
        return true;
    const QFontMetricsF fm(font);
    if (fm.horizontalAdvance(frame.title()) + fm.height() * 1.5 > frame.width())
        return false;
    for (const QObject* child : frame.children()) {
        const auto* w = qobject_cast<const QWidget*>(child);
        if (w && !w->isWindow() && !w->isHidden() && w->y() < fm.height())
            return false;
    }
    return true;
}

bool buttonFits(const QAbstractButton& button, const QFont& font) {
    const QRectF room = QRectF(button.rect()).adjusted(4, 2, -4, -2);
    return lineFits(QFontMetricsF(font), button.text(), room);
}

// Measures a widget that does not draw its own texts in `font` without giving it the font.
bool measuredFits(const QWidget& w, const QFont& font) {
    if (const auto* label = qobject_cast<const QLabel*>(&w))
        return labelFits(*label, font);
    if (const auto* frame = qobject_cast<const QGroupBox*>(&w))
        return frameFits(*frame, font);
    if (const auto* button = qobject_cast<const QAbstractButton*>(&w))
        return buttonFits(*button, font);
    return true;
}

QFont sized(const QFont& font, double points) {
    QFont f = font;
    f.setPointSizeF(points);
    return f;
}

} // namespace

bool fits(const QWidget& w) {
    if (const auto* own = dynamic_cast<const FitsText*>(&w))
        return own->textFits();
    return measuredFits(w, w.font());
}

double fitFont(QWidget& w, double points) {
    const auto* own = dynamic_cast<const FitsText*>(&w);
    // A control that draws its own texts lays them out in its own font, so each size tried is
    // given to it; the others are measured without being touched until the size is known.
    const auto fitsAt = [&](double size) {
        if (!own)
            return measuredFits(w, sized(w.font(), size));
        if (w.font().pointSizeF() != size)
            w.setFont(sized(w.font(), size));
        return own->textFits();
    };
    double chosen = points;
    if (points > kSmallestPoints && !fitsAt(points)) {
        // The largest quarter point that fits, between the smallest type and the size asked.
        long lo = std::lround(std::ceil(kSmallestPoints * 4));
        long hi = std::lround(std::ceil(points * 4)) - 1;
        while (lo < hi) {
            const long mid = (lo + hi + 1) / 2;
            if (fitsAt(mid / 4.0))
                lo = mid;
            else
                hi = mid - 1;
        }
        chosen = lo / 4.0;
    }
    if (w.font().pointSizeF() != chosen)
        w.setFont(sized(w.font(), chosen));
    return chosen;
}

} // namespace zorvik::TextFit
