// The zorvik program's name, version, desktop entry and icon.
#include "app/ApplicationSetup.h"

#include <QApplication>
#include <QEvent>
#include <QIcon>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace zorvik {

namespace {

/// Brings every modal window to the front with the keyboard focus as it opens, whichever
/// window opened it: a dialog left behind the main window or the File window would block the
/// program without being seen, and the program would look frozen.
class ModalWindowsToTheFront : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Show || !watched->isWidgetType())
            return false;
        auto* w = static_cast<QWidget*>(watched);
        if (!w->isWindow() || w->windowModality() == Qt::NonModal)
            return false;
        // Once the window system has the window, after the show has been handled.
        QTimer::singleShot(0, w, [window = QPointer<QWidget>(w)] {
            if (window && window->isVisible() && QApplication::activeModalWidget() == window) {
                window->raise();
                window->activateWindow();
            }
        });
        return false;
    }
};

} // namespace

void setUpApplication() {
    QApplication::setApplicationName("zorvik");
    QApplication::setApplicationVersion(ZORVIK_VERSION);
    QGuiApplication::setDesktopFileName(ZORVIK_APP_ID);
    QApplication::setWindowIcon(QIcon::fromTheme(ZORVIK_APP_ID));
    qApp->installEventFilter(new ModalWindowsToTheFront(qApp));
}

} // namespace zorvik
