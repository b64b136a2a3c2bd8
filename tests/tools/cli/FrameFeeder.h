// A pseudo-terminal that streams frames like the probe, for the zorvik-cli capture tests.
#pragma once

#include "CliRunner.h"
#include "common/PtyPair.h"

#include <QTimer>

namespace zorvik::test {

/// Streams frames of sampleState() with rising seeds on a pseudo-terminal, one every 10 ms
/// once started.
class FrameFeeder {
public:
    FrameFeeder() {
        timer_.setInterval(10);
        QObject::connect(&timer_, &QTimer::timeout,
                         [this] { pty_.write(frame(sampleState(), seed_++)); });
    }
    void start() { timer_.start(); }
    void stop() { timer_.stop(); }
    PtyPair& pty() { return pty_; }
    QString path() const { return QString::fromStdString(pty_.path()); }

private:
    PtyPair pty_;
    QTimer timer_;
    int seed_ = 0;
};

} // namespace zorvik::test
