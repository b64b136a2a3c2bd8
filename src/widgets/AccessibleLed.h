// What assistive technology sees of a panel lamp: an indicator that is lit (in a colour) or out.
#pragma once

#include <QAccessibleWidget>

namespace zorvik {

class Led;

/// A lamp as an indicator: checked while lit; its value text says "lit green", "out", ...
class AccessibleLed : public QAccessibleWidget {
public:
    explicit AccessibleLed(Led* led);

    QString text(QAccessible::Text t) const override;
    QAccessible::State state() const override;

private:
    Led* led() const;
};

} // namespace zorvik
