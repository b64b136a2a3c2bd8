// What assistive technology sees of a panel lamp.
#include "widgets/AccessibleLed.h"

#include "widgets/Led.h"

namespace zorvik {

AccessibleLed::AccessibleLed(Led* led) : QAccessibleWidget(led, QAccessible::Indicator) {}

Led* AccessibleLed::led() const {
    return qobject_cast<Led*>(object());
}

QString AccessibleLed::text(QAccessible::Text t) const {
    if (t == QAccessible::Value)
        return led()->stateText();
    return QAccessibleWidget::text(t);
}

QAccessible::State AccessibleLed::state() const {
    QAccessible::State s = QAccessibleWidget::state();
    s.readOnly = true;
    s.checked = led()->value();
    return s;
}

} // namespace zorvik
