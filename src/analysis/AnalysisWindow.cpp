// What every analysis window shares.
#include "analysis/AnalysisWindow.h"

#include "app/frmMain.h"

#include <QApplication>
#include <QGuiApplication>
#include <QHideEvent>
#include <QScreen>
#include <QStringList>

namespace zorvik {

AnalysisWindow::AnalysisWindow(frmMain& window, const AnalysisSettings& settings, const char* name)
    : QWidget(&window, Qt::Window), main_(window), settings_(settings), name_(name) {
    setObjectName(QStringLiteral("frm") + QString::fromLatin1(name));
    // A window still open when the program ends keeps the place it has then.
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
        if (isVisible())
            savePlace();
    });
}

std::string AnalysisWindow::key(const char* name) const {
    return name_ + name;
}

void AnalysisWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (placed_)
        return;
    placed_ = true;
    // The place it had when it was last closed ("left,top,width,height" in pixels), kept on a
    // screen that is there now; the first time, beside the main window where there is room.
    QRect place;
    if (const auto text = settings_.text(key("Place"))) {
        const QStringList parts = QString::fromStdString(*text).split(',');
        if (parts.size() == 4) {
            bool ok[4];
            const QRect r(parts[0].toInt(&ok[0]), parts[1].toInt(&ok[1]), parts[2].toInt(&ok[2]),
                          parts[3].toInt(&ok[3]));
            if (ok[0] && ok[1] && ok[2] && ok[3] && r.width() > 0 && r.height() > 0)
                place = r;
        }
    }
    QScreen* screen = main_.screen() ? main_.screen() : QGuiApplication::primaryScreen();
    const QRect room = screen ? screen->availableGeometry() : QRect();
    if (place.isValid()) {
        place.setSize(place.size().expandedTo(minimumSizeHint()));
        if (room.isValid()) {
            place.setSize(place.size().boundedTo(room.size()));
            place.moveLeft(std::clamp(place.left(), room.left(), room.right() - place.width() + 1));
            place.moveTop(std::clamp(place.top(), room.top(), room.bottom() - place.height() + 1));
        }
        resize(place.size());
        move(place.topLeft());
    } else if (room.isValid()) {
        const QRect mainFrame = main_.frameGeometry();
        QPoint at(mainFrame.right() + 1, mainFrame.top());
        if (at.x() + width() > room.right())
            at.setX(std::max(room.left(), room.right() - width()));
        move(at);
    }
}

void AnalysisWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (!event->spontaneous()) // (minimised, it keeps the place it had)
        savePlace();
}

void AnalysisWindow::savePlace() {
    const QRect g = geometry();
    settings_.write({{key("Place"), QStringLiteral("%1,%2,%3,%4")
                                        .arg(pos().x())
                                        .arg(pos().y())
                                        .arg(g.width())
                                        .arg(g.height())
                                        .toStdString()}});
}

} // namespace zorvik
