// What the X server knows of a window, read with the X utilities as any other X client would:
// the title bar text (_NET_WM_NAME), the frame the window manager put around it, the stacking
// order of the windows and the window that has the focus.
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QRect>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace zorvik::test {

/// Output of an X utility; empty when it failed.
inline QString runX(const QString& program, const QStringList& args) {
    QProcess p;
    p.start(program, args);
    if (!p.waitForFinished(10000) || p.exitCode() != 0)
        return {};
    return QString::fromUtf8(p.readAllStandardOutput());
}

/// The title bar text the X server holds for the window (its _NET_WM_NAME), as a window
/// manager or a screen reader reads it; empty while it has none.
inline QString titleBarText(const QWidget* window) {
    const QString out =
        runX("xprop", {"-id", QString::number(window->winId()), "-notype", "_NET_WM_NAME"});
    static const QRegularExpression value(R"re(^_NET_WM_NAME = "(.*)"\s*$)re");
    const QRegularExpressionMatch m = value.match(out);
    return m.hasMatch() ? m.captured(1) : QString();
}

/// The title bar text once the window has one (waits up to 5 s for the server to have it).
inline QString awaitTitleBarText(const QWidget* window) {
    QString text;
    (void)QTest::qWaitFor(
        [&] {
            text = titleBarText(window);
            return !text.isEmpty();
        },
        5000);
    return text;
}

/// The first visible top-level window whose title is `title`, or nullptr.
inline QWidget* visibleWindow(const QString& title) {
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w->isVisible() && w->windowTitle() == title)
            return w;
    }
    return nullptr;
}

/// Runs `then` with the window titled `title` as soon as it shows, from inside whatever modal
/// loop shows it; gives up after 10 s.
inline void whenShown(const QString& title, std::function<void(QWidget*)> then) {
    auto* timer = new QTimer;
    auto* clock = new QElapsedTimer;
    clock->start();
    QObject::connect(timer, &QTimer::timeout, [timer, clock, title, then] {
        QWidget* w = visibleWindow(title);
        if (!w && clock->elapsed() < 10000)
            return;
        timer->stop();
        timer->deleteLater();
        delete clock;
        if (w)
            then(w);
    });
    timer->start(20);
}

} // namespace zorvik::test
