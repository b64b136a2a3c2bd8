// What every analysis window shares.
#include "analysis/AnalysisWindow.h"

#include "app/frmMain.h"

#include <QApplication>
#include <QGuiApplication>
#include <QHideEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QStringList>
#include <algorithm>

namespace zorvik {

namespace {

const char* helpPageOf(const char* name) {
    const std::string n(name);
    if (n == "Measurements")
        return "measurements.html";
    if (n == "Spectrum")
        return "spectrum.html";
    if (n == "Compare")
        return "compare.html";
    return "export.html";
}

} // namespace

AnalysisWindow::AnalysisWindow(frmMain& window, const AnalysisSettings& settings, const char* name)
    : QWidget(&window, Qt::Window), main_(window), settings_(settings), name_(name) {
    setObjectName(QStringLiteral("frm") + QString::fromLatin1(name));
    // F1 opens the manual at this window's page ("Spectrum": spectrum.html).
    setProperty("zorvikHelpPage", QString::fromLatin1(helpPageOf(name)));
    showTimer_.setSingleShot(true);
    connect(&showTimer_, &QTimer::timeout, this, [this] {
        lastShown_.start();
        showNow();
    });
    // A window still open when the program ends keeps the place it has then.
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
        if (isVisible())
            savePlace();
    });
}

std::string AnalysisWindow::key(const char* name) const {
    return name_ + name;
}

void AnalysisWindow::scheduleShow() {
    if (showTimer_.isActive())
        return;
    const qint64 since = lastShown_.isValid() ? lastShown_.elapsed() : showInterval_;
    if (since >= showInterval_) {
        lastShown_.start();
        showNow();
        return;
    }
    showTimer_.start(static_cast<int>(showInterval_ - since));
}

void AnalysisWindow::keyPressEvent(QKeyEvent* event) {
    // Esc closes the window, as in the program's other windows.
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
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
        // Beside the main window where there is room: to its right, its left, below it,
        // above it; otherwise at the right edge of the screen, over it.
        const QRect main = main_.frameGeometry();
        const QSize size = frameGeometry().size();
        const QPoint tries[] = {{main.right() + 1, main.top()},
                                {main.left() - size.width(), main.top()},
                                {main.left(), main.bottom() + 1},
                                {main.left(), main.top() - size.height()}};
        QPoint at(std::max(room.left(), room.right() + 1 - size.width()), main.top());
        for (const QPoint& p : tries) {
            if (room.contains(QRect(p, size))) {
                at = p;
                break;
            }
        }
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
