// What assistive technology sees of a knob, a slide or an indicator slide.
#include "widgets/AccessibleValueControl.h"

#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Slide.h"

namespace zorvik {

AccessibleValueControl::AccessibleValueControl(Knob* knob)
    : QAccessibleWidget(knob, QAccessible::Dial) {}

AccessibleValueControl::AccessibleValueControl(Slide* slide)
    : QAccessibleWidget(slide, QAccessible::Slider) {}

AccessibleValueControl::AccessibleValueControl(IndicatorSlide* indicator)
    : QAccessibleWidget(indicator, QAccessible::Slider) {}

Knob* AccessibleValueControl::knob() const {
    return qobject_cast<Knob*>(object());
}
Slide* AccessibleValueControl::slide() const {
    return qobject_cast<Slide*>(object());
}
IndicatorSlide* AccessibleValueControl::indicator() const {
    return qobject_cast<IndicatorSlide*>(object());
}

void* AccessibleValueControl::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QString AccessibleValueControl::text(QAccessible::Text t) const {
    switch (t) {
    case QAccessible::Name:
        if (!widget()->accessibleName().isEmpty())
            return widget()->accessibleName();
        return knob() ? knob()->heading() : QString();
    case QAccessible::Value:
        if (const Knob* k = knob())
            return k->valueText();
        if (const Slide* s = slide())
            return s->valueText();
        if (const IndicatorSlide* i = indicator())
            return i->accessibleValueText();
        return QString();
    case QAccessible::Description:
        if (!widget()->accessibleDescription().isEmpty())
            return widget()->accessibleDescription();
        if (const Knob* k = knob())
            return QStringLiteral("Position %1 of %2").arg(k->value()).arg(k->positionCount());
        return QString();
    default:
        return QAccessibleWidget::text(t);
    }
}

QAccessible::State AccessibleValueControl::state() const {
    QAccessible::State s = QAccessibleWidget::state();
    if (indicator())
        s.readOnly = true;
    return s;
}

QVariant AccessibleValueControl::currentValue() const {
    if (const Knob* k = knob())
        return k->value();
    if (const Slide* s = slide())
        return s->value();
    if (const IndicatorSlide* i = indicator())
        return i->value();
    return QVariant();
}

void AccessibleValueControl::setCurrentValue(const QVariant& value) {
    // An indicator only shows what the probe reports; assistive technology cannot move it.
    if (Knob* k = knob())
        k->setValue(value.toInt());
    else if (Slide* s = slide())
        s->setValue(qBound(s->minimum(), value.toDouble(), s->maximum()));
}

QVariant AccessibleValueControl::maximumValue() const {
    if (const Knob* k = knob())
        return k->positionCount();
    if (const Slide* s = slide())
        return s->maximum();
    if (const IndicatorSlide* i = indicator())
        return i->maximum();
    return QVariant();
}

QVariant AccessibleValueControl::minimumValue() const {
    if (const Knob* k = knob())
        return k->positionCount() > 0 ? 1 : 0;
    if (const Slide* s = slide())
        return s->minimum();
    if (const IndicatorSlide* i = indicator())
        return i->minimum();
    return QVariant();
}

QVariant AccessibleValueControl::minimumStepSize() const {
    if (knob())
        return 1;
    if (const Slide* s = slide())
        return s->smallStep();
    if (const IndicatorSlide* i = indicator())
        return i->mode() == IndicatorSlide::Mode::Discrete ? QVariant(1.0) : QVariant(0.0);
    return QVariant();
}

} // namespace zorvik
