// What the X server knows of a window, read with the X utilities as any other X client would:
// the title bar text (_NET_WM_NAME), the frame the window manager put around it, the stacking
// order of the windows and the window that has the focus.
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QMargins>
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

/// Where the X server has a window: its client area on the screen, and the frame the window
/// manager drew around it (_NET_FRAME_EXTENTS; none without a window manager).
struct XPlacement {
    QRect client;
    QMargins frame;
    QRect outer() const { return client.marginsAdded(frame); }
};

inline XPlacement xPlacement(const QWidget* window) {
    XPlacement p;
    const QString id = QString::number(window->winId());
    const QString info = runX("xwininfo", {"-id", id});
    auto number = [&](const char* label) {
        const QRegularExpression re(QString(label) + R"(:\s+(-?\d+))");
        const QRegularExpressionMatch m = re.match(info);
        return m.hasMatch() ? m.captured(1).toInt() : 0;
    };
    p.client = QRect(number("Absolute upper-left X"), number("Absolute upper-left Y"),
                     number("Width"), number("Height"));
    const QString extents = runX("xprop", {"-id", id, "_NET_FRAME_EXTENTS"});
    static const QRegularExpression four(R"(=\s*(\d+),\s*(\d+),\s*(\d+),\s*(\d+))");
    const QRegularExpressionMatch m = four.match(extents);
    if (m.hasMatch())
        p.frame = QMargins(m.captured(1).toInt(), m.captured(3).toInt(), m.captured(2).toInt(),
                           m.captured(4).toInt());
    return p;
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

/// The program's windows from bottom to top: as the window manager stacks them
/// (_NET_CLIENT_LIST_STACKING), or without a window manager as the X server does (the root
/// window's children, which xwininfo lists top first).
inline QList<quint64> stackingOrder() {
    static const QRegularExpression id(R"(0x[0-9a-fA-F]+)");
    QList<quint64> ids;
    const QString managed = runX("xprop", {"-root", "_NET_CLIENT_LIST_STACKING"});
    if (managed.contains("0x")) {
        for (const QRegularExpressionMatch& m : id.globalMatch(managed))
            ids << m.captured(0).toULongLong(nullptr, 16);
        return ids;
    }
    QString tree = runX("xwininfo", {"-root", "-children"});
    tree = tree.mid(tree.indexOf("children:"));
    for (const QRegularExpressionMatch& m : id.globalMatch(tree))
        ids.prepend(m.captured(0).toULongLong(nullptr, 16));
    return ids;
}

/// The window that has the keyboard focus: the window manager's _NET_ACTIVE_WINDOW, or
/// without one the X server's input focus; 0 when none.
inline quint64 activeWindowId() {
    const QString out = runX("xprop", {"-root", "_NET_ACTIVE_WINDOW"});
    static const QRegularExpression id(R"(0x[0-9a-fA-F]+)");
    const QRegularExpressionMatch m = id.match(out);
    if (m.hasMatch())
        return m.captured(0).toULongLong(nullptr, 16);
    return runX("xdotool", {"getwindowfocus"}).trimmed().toULongLong();
}

/// Whether `window` stands above every other window of the program and has the focus.
inline bool onTopAndFocused(const QWidget* window) {
    const quint64 self = window->winId();
    const QList<quint64> stack = stackingOrder();
    QList<quint64> ours;
    for (const QWidget* w : QApplication::topLevelWidgets()) {
        if (w->isVisible() && w->internalWinId())
            ours << w->internalWinId();
    }
    quint64 topmost = 0;
    for (quint64 id : stack) {
        if (ours.contains(id))
            topmost = id;
    }
    return topmost == self && activeWindowId() == self;
}

} // namespace zorvik::test
