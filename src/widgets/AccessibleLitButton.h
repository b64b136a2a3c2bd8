// What assistive technology sees of a lit button: a checkable button whose check is its value.
#pragma once

#include <QAccessibleWidget>

namespace zorvik {

class LitButton;

/// A lit button as a checkable push button: checked while its value is on (its lamp lit),
/// pressed while held down; the press action works it as a click does.
class AccessibleLitButton : public QAccessibleWidget {
public:
    explicit AccessibleLitButton(LitButton* button);

    QString text(QAccessible::Text t) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& actionName) override;

private:
    LitButton* button() const;
};

} // namespace zorvik
