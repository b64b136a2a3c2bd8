// The system's request to end the program: SIGTERM (logout, shutdown, kill), SIGHUP (the
// terminal went away), SIGINT (Ctrl+C) and the desktop session ending. Each leads to the
// program's normal shutdown, once.
#pragma once

#include <QObject>

class QSocketNotifier;

namespace zorvik {

class SessionEnd : public QObject {
    Q_OBJECT
public:
    /// Catches SIGTERM, SIGHUP and SIGINT from now on. A signal only writes a byte to a pipe,
    /// so one that arrives before a SessionEnd listens (during start-up) waits there and is
    /// answered as soon as one does. Call it first thing in main().
    static void catchSignals();

    /// Listens for the signals caught and for the desktop session ending.
    explicit SessionEnd(QObject* parent = nullptr);
    ~SessionEnd() override;

    /// True once requested() was emitted.
    bool ending() const { return ending_; }

signals:
    /// The program is asked to end: emitted for the first request only; later signals (a
    /// second SIGTERM during the shutdown) change nothing.
    void requested();

private:
    void request();

    QSocketNotifier* notifier_ = nullptr;
    bool ending_ = false;
};

} // namespace zorvik
