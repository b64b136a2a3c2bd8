// What assistive technology sees of a knob, a slide or an indicator slide: role, name, value.
#pragma once

#include <QAccessibleValueInterface>
#include <QAccessibleWidget>

namespace zorvik {

class IndicatorSlide;
class Knob;
class Slide;

/// A knob (a dial), a slide (a slider) or an indicator slide (a read-only slider), with the
/// value interface: current value, minimum, maximum and step. The value text is what the panel
/// shows: a knob's label ("500u"), a slide's number, an indicator's label and lit lamps.
class AccessibleValueControl : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleValueControl(Knob* knob);
    explicit AccessibleValueControl(Slide* slide);
    explicit AccessibleValueControl(IndicatorSlide* indicator);

    void* interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text t) const override;
    QAccessible::State state() const override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    Knob* knob() const;
    Slide* slide() const;
    IndicatorSlide* indicator() const;
};

} // namespace zorvik
