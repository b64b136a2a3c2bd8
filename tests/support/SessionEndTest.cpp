// The system's requests to end the program become one request on the window's thread.
#include "support/SessionEnd.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <csignal>

using namespace zorvik;

namespace {

/// Puts the default actions back, so that Ctrl+C still ends the test program afterwards.
struct DefaultActionsAfterwards {
    ~DefaultActionsAfterwards() {
        for (int signal : {SIGTERM, SIGHUP, SIGINT})
            std::signal(signal, SIG_DFL);
    }
};

TEST(SessionEnd, SignalsBeforeAndAfterListeningAskForTheShutdownExactlyOnce) {
    DefaultActionsAfterwards restore;
    SessionEnd::catchSignals();
    // A signal during start-up, before anything listens, is kept.
    ASSERT_EQ(::raise(SIGTERM), 0);
    SessionEnd end;
    QSignalSpy requested(&end, &SessionEnd::requested);
    ASSERT_TRUE(QTest::qWaitFor([&] { return requested.count() == 1; }, 5000));
    EXPECT_TRUE(end.ending());
    // Further signals of any of the three kinds change nothing.
    for (int signal : {SIGTERM, SIGHUP, SIGINT, SIGTERM})
        ASSERT_EQ(::raise(signal), 0);
    // raise() runs the handler at once, so the pipe is readable now: a few passes of the event
    // loop hand it on.
    for (int pass = 0; pass < 3; ++pass)
        QCoreApplication::processEvents();
    EXPECT_EQ(requested.count(), 1);
}

} // namespace
