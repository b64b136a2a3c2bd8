// Tests of the serial link on a pseudo-terminal: exact reads, time-outs, reset, failures.
#include "instrument/QtSerialLink.h"
#include "common/EventLoop.h"
#include "common/PtyPair.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

using namespace zorvik;
using zorvik::test::PtyPair;

TEST(QtSerialLink, ReadCompletesWithExactlyTheBytesAskedFor) {
    PtyPair pty;
    ASSERT_TRUE(pty.ok());
    QtSerialLink link;
    ASSERT_TRUE(link.open(QString::fromStdString(pty.path()))) << link.errorString().toStdString();
    EXPECT_EQ(link.baudRate(), 19200);
    QSignalSpy spy(&link, &SerialLink::dataReceived);
    pty.write({1, 2, 3, 4, 5});
    link.read(2, 0);
    EXPECT_EQ(spy.count(), 0) << "completion never comes from inside read()";
    ASSERT_TRUE(QTest::qWaitFor([&] { return spy.count() == 1; }, 2000));
    EXPECT_EQ(spy.at(0).at(0).toByteArray(), QByteArray("\x01\x02", 2));
    link.read(4, 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return link.bytesWaiting() == 3; }, 2000));
    test::runPendingEvents();
    EXPECT_EQ(spy.count(), 1) << "only three bytes are there";
    pty.write({6});
    ASSERT_TRUE(QTest::qWaitFor([&] { return spy.count() == 2; }, 2000));
    EXPECT_EQ(spy.at(1).at(0).toByteArray(), QByteArray("\x03\x04\x05\x06", 4));
}

TEST(QtSerialLink, TimedReadReportsTimeOutAndKeepsTheBytesThatCame) {
    PtyPair pty;
    QtSerialLink link;
    ASSERT_TRUE(link.open(QString::fromStdString(pty.path())));
    QSignalSpy data(&link, &SerialLink::dataReceived);
    QSignalSpy timedOut(&link, &SerialLink::readTimedOut);
    pty.write({9, 9, 9});
    QElapsedTimer clock;
    clock.start();
    link.read(137, 200);
    ASSERT_TRUE(QTest::qWaitFor([&] { return timedOut.count() == 1; }, 3000));
    EXPECT_GE(clock.elapsed(), 190);
    EXPECT_EQ(data.count(), 0);
    EXPECT_FALSE(link.readPending());
    link.read(3, 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return data.count() == 1; }, 2000));
}

TEST(QtSerialLink, ResetInputDiscardsBufferedBytesAndThePendingRead) {
    PtyPair pty;
    QtSerialLink link;
    ASSERT_TRUE(link.open(QString::fromStdString(pty.path())));
    QSignalSpy data(&link, &SerialLink::dataReceived);
    pty.write({1, 2, 3, 4});
    ASSERT_TRUE(QTest::qWaitFor([&] { return link.bytesWaiting() == 4; }, 2000));
    link.read(8, 0);
    link.resetInput();
    EXPECT_FALSE(link.readPending());
    pty.write({7, 8});
    link.read(2, 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return data.count() == 1; }, 2000));
    EXPECT_EQ(data.at(0).at(0).toByteArray(), QByteArray("\x07\x08", 2));
}

TEST(QtSerialLink, VanishedDeviceRaisesPortErrorOnceAndClosesThePort) {
    auto pty = std::make_unique<PtyPair>();
    QtSerialLink link;
    ASSERT_TRUE(link.open(QString::fromStdString(pty->path())));
    QSignalSpy errors(&link, &SerialLink::portError);
    link.read(2, 0);
    pty->closeAll();
    ASSERT_TRUE(QTest::qWaitFor([&] { return errors.count() >= 1; }, 3000));
    test::runPendingEvents();
    EXPECT_EQ(errors.count(), 1);
    EXPECT_FALSE(link.isOpen());
}

TEST(QtSerialLink, DevicePathThatIsNotASerialPortFailsToOpen) {
    QTemporaryDir dir;
    const QString file = dir.filePath("not-a-port");
    {
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("x");
    }
    QtSerialLink link;
    EXPECT_FALSE(link.open(file));
    EXPECT_FALSE(link.isOpen());
    EXPECT_FALSE(link.errorString().isEmpty());
    EXPECT_FALSE(link.open(dir.filePath("missing")));
}

TEST(QtSerialLink, PortHeldByAnotherProgramFailsToOpen) {
    PtyPair pty;
    QtSerialLink first;
    ASSERT_TRUE(first.open(QString::fromStdString(pty.path())));
    QtSerialLink second;
    EXPECT_FALSE(second.open(QString::fromStdString(pty.path())));
}
