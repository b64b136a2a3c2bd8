// The one way the program shows a message box; tests replace the box with a recorder.
#pragma once

#include <QMessageBox>
#include <QString>
#include <functional>

class QWidget;

namespace zorvik {

/// Icons of the program's message boxes.
enum class MsgIcon { None, Critical, Exclamation, Information, Question };

/// What a message box showed: the exact icon, title, text and buttons.
struct MessageRecord {
    MsgIcon icon = MsgIcon::None;
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    /// Text behind the box's "Show Details..." button; empty when the box has none.
    QString details;
};

class MessageBoxes {
public:
    /// Answers a message box instead of showing it (tests); returns the button "pressed".
    using Interceptor = std::function<QMessageBox::StandardButton(const MessageRecord&)>;

    /// Shows an application-modal box and returns the button pressed. `details`, when not
    /// empty, is offered behind the box's "Show Details..." button.
    static QMessageBox::StandardButton show(QWidget* parent, MsgIcon icon, const QString& title,
                                            const QString& text,
                                            QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                            const QString& details = QString());

    /// Installs (or, with an empty function, removes) the interceptor.
    static void setInterceptor(Interceptor interceptor);
};

} // namespace zorvik
