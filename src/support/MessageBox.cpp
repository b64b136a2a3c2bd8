// Message boxes through one seam.
#include "support/MessageBox.h"

#include <utility>

namespace zorvik {

namespace {
MessageBoxes::Interceptor& interceptor() {
    static MessageBoxes::Interceptor instance;
    return instance;
}

QMessageBox::Icon toQt(MsgIcon icon) {
    switch (icon) {
    case MsgIcon::Critical:
        return QMessageBox::Critical;
    case MsgIcon::Exclamation:
        return QMessageBox::Warning;
    case MsgIcon::Information:
        return QMessageBox::Information;
    case MsgIcon::Question:
        return QMessageBox::Question;
    case MsgIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}
} // namespace

QMessageBox::StandardButton MessageBoxes::show(QWidget* parent, MsgIcon icon, const QString& title,
                                               const QString& text,
                                               QMessageBox::StandardButtons buttons,
                                               const QString& details) {
    if (interceptor())
        return interceptor()(MessageRecord{icon, title, text, buttons, details});
    QMessageBox box(toQt(icon), title, text, buttons, parent);
    box.setWindowModality(Qt::ApplicationModal);
    if (!details.isEmpty())
        box.setDetailedText(details);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

void MessageBoxes::setInterceptor(Interceptor newInterceptor) {
    interceptor() = std::move(newInterceptor);
}

} // namespace zorvik
