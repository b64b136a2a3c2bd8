// Test helper: runs a step once a window of a given type is on screen, for driving modal
// windows (whose exec() blocks the test) from inside their own event loop.
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <gtest/gtest.h>

namespace zorvik::test {

/// Polls the event loop for a visible window of type T and hands it to `step`. If none shows
/// within five seconds the test fails and every modal window is closed, so nothing hangs.
template <class T> void whenVisible(std::function<void(T*)> step) {
    auto* poll = new QTimer;
    auto* waited = new QElapsedTimer;
    waited->start();
    QObject::connect(poll, &QTimer::timeout, [poll, waited, step] {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<T*>(window); found && found->isVisible()) {
                poll->stop();
                poll->deleteLater();
                delete waited;
                step(found);
                return;
            }
        }
        if (waited->elapsed() > 5000) {
            poll->stop();
            poll->deleteLater();
            delete waited;
            ADD_FAILURE() << "the expected window never showed";
            while (QWidget* modal = QApplication::activeModalWidget())
                modal->close();
        }
    });
    poll->start(10);
}

} // namespace zorvik::test
