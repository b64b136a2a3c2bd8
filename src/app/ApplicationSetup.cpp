// The zorvik program's name, version, desktop entry and icon.
#include "app/ApplicationSetup.h"

#include <QApplication>
#include <QIcon>

namespace zorvik {

void setUpApplication() {
    QApplication::setApplicationName("zorvik");
    QApplication::setApplicationVersion(ZORVIK_VERSION);
    QGuiApplication::setDesktopFileName(ZORVIK_APP_ID);
    QApplication::setWindowIcon(QIcon::fromTheme(ZORVIK_APP_ID));
}

} // namespace zorvik
