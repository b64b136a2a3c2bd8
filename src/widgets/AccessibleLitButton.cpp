// What assistive technology sees of a lit button.
#include "widgets/AccessibleLitButton.h"

#include "widgets/LitButton.h"

namespace zorvik {

AccessibleLitButton::AccessibleLitButton(LitButton* button)
    : QAccessibleWidget(button, QAccessible::Button) {}

LitButton* AccessibleLitButton::button() const {
    return qobject_cast<LitButton*>(object());
}

QString AccessibleLitButton::text(QAccessible::Text t) const {
    if (t == QAccessible::Name) {
        if (!widget()->accessibleName().isEmpty())
            return widget()->accessibleName();
        QString caption = button()->text();
        caption.remove(QLatin1Char('&'));
        return caption;
    }
    if (t == QAccessible::Value)
        return button()->value() ? QStringLiteral("on") : QStringLiteral("off");
    return QAccessibleWidget::text(t);
}

QAccessible::State AccessibleLitButton::state() const {
    QAccessible::State s = QAccessibleWidget::state();
    s.checkable = true;
    s.checked = button()->value();
    s.pressed = button()->isDown();
    return s;
}

QStringList AccessibleLitButton::actionNames() const {
    if (!widget()->isEnabled())
        return {};
    if (button()->mode() == LitButton::Mode::Toggle)
        return {pressAction(), toggleAction()};
    return {pressAction()};
}

void AccessibleLitButton::doAction(const QString& actionName) {
    if (!widget()->isEnabled())
        return;
    if (actionName == pressAction() || actionName == toggleAction())
        button()->click();
}

} // namespace zorvik
