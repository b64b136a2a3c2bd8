// Test helper: runs what the event loop has to do now, for tests that check that an action
// caused nothing more (no message, no second call). Unlike a wait of fixed length it does not
// depend on how busy the machine is: work that is due now is done, nothing later is awaited.
#pragma once

#include <QCoreApplication>
#include <QEventLoop>

namespace zorvik::test {

/// Handles the posted events and the zero timers, and the work they post in turn (a few
/// rounds of it).
inline void runPendingEvents() {
    for (int round = 0; round < 5; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
}

} // namespace zorvik::test
