// A round panel lamp (LED) that is lit in a chosen colour or dark.
#include "widgets/Led.h"

#include "widgets/PanelLook.h"

#include <QAccessible>
#include <QPainter>

namespace zorvik {

Led::Led(QWidget* parent) : QWidget(parent) {
    PanelLook::setUpControl(this);
}

void Led::setOnColor(const QColor& color) {
    if (!color.isValid() || color == m_onColor)
        return;
    m_onColor = color;
    update();
    notifyAccessibility();
}

void Led::setValue(bool lit) {
    if (lit == m_value)
        return;
    m_value = lit;
    update();
    notifyAccessibility();
    emit valueChanged(lit);
}

QString Led::stateText() const {
    return m_value ? QStringLiteral("lit ") + PanelLook::colorWord(m_onColor)
                   : QStringLiteral("out");
}

void Led::notifyAccessibility() {
    if (!QAccessible::isActive())
        return;
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

void Led::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const QRectF r = QRectF(rect()).adjusted(3.0, 3.0, -3.0, -3.0);
    PanelLook::drawRoundLamp(p, r, m_onColor, m_value, isEnabled());
    if (hasFocus())
        PanelLook::drawFocusFrame(p, rect());
}

void Led::focusInEvent(QFocusEvent* event) {
    update();
    QWidget::focusInEvent(event);
}

void Led::focusOutEvent(QFocusEvent* event) {
    update();
    QWidget::focusOutEvent(event);
}

QSize Led::sizeHint() const {
    const int side = QFontMetrics(font()).height() * 2;
    return QSize(side, side);
}

QSize Led::minimumSizeHint() const {
    return QSize(10, 10);
}

} // namespace zorvik
