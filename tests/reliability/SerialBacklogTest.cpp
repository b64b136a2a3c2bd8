// The serial link keeps a bounded backlog: the port holds at most a few kilobytes in the
// program's memory, the rest waits in the system and the line slows to the program's pace, so
// nothing that arrived is ever dropped by the program, whether it holds or reads flat out.
#include "common/EventLoop.h"
#include "common/PtyPair.h"
#include "instrument/QtSerialLink.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <poll.h>
#include <thread>
#include <unistd.h>

using namespace zorvik;
using zorvik::test::PtyPair;

namespace {

std::vector<unsigned char> counting(std::size_t size, std::size_t first = 0) {
    std::vector<unsigned char> bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>((first + i) % 251);
    return bytes;
}

QByteArray asBytes(const std::vector<unsigned char>& bytes) {
    return QByteArray(reinterpret_cast<const char*>(bytes.data()),
                      static_cast<qsizetype>(bytes.size()));
}

// Reads `total` bytes through the link in reads of `chunk`, as the receive cycle does, and
// notes the most bytes that ever waited in the program.
QByteArray readAllThrough(QtSerialLink& link, std::size_t total, int chunk,
                          qint64* mostWaiting = nullptr) {
    QByteArray got;
    QSignalSpy data(&link, &SerialLink::dataReceived);
    while (static_cast<std::size_t>(got.size()) < total) {
        const auto left = total - static_cast<std::size_t>(got.size());
        const int count = static_cast<int>(std::min<std::size_t>(left, std::size_t(chunk)));
        data.clear();
        link.read(count, 3000);
        if (!QTest::qWaitFor([&] { return data.count() == 1; }, 5000))
            break;
        got += data.at(0).at(0).toByteArray();
        if (mostWaiting)
            *mostWaiting = std::max(*mostWaiting, link.bytesWaiting());
    }
    return got;
}

} // namespace

TEST(SerialBacklog, InputArrivingWhileNoReadIsArmedWaitsInTheSystemAndNoneIsLost) {
    PtyPair pty;
    ASSERT_TRUE(pty.ok());
    QtSerialLink link;
    ASSERT_TRUE(link.open(QString::fromStdString(pty.path())));
    // Write until the terminal takes nothing more, the program running all the while.
    std::size_t accepted = 0;
    int refused = 0;
    while (refused < 50 && accepted < (std::size_t(8) << 20)) {
        const std::size_t n = pty.write(counting(1024, accepted));
        accepted += n;
        refused = n == 0 ? refused + 1 : 0;
        QTest::qWait(1);
    }
    ASSERT_EQ(refused, 50) << "the terminal kept taking bytes: the program did not hold back";
    EXPECT_EQ(link.bytesWaiting(), QtSerialLink::kMaxBacklog);
    EXPECT_GT(accepted, static_cast<std::size_t>(QtSerialLink::kMaxBacklog));

    qint64 mostWaiting = 0;
    const QByteArray got = readAllThrough(link, accepted, 139, &mostWaiting);
    EXPECT_EQ(got.size(), static_cast<qsizetype>(accepted));
    EXPECT_TRUE(got == asBytes(counting(accepted))) << "every byte, in order";
    EXPECT_LE(mostWaiting, QtSerialLink::kMaxBacklog);
}

TEST(SerialBacklog, FloodFasterThanTheReaderSlowsTheLineAndLosesNothing) {
    PtyPair pty;
    ASSERT_TRUE(pty.ok());
    QtSerialLink link;
    ASSERT_TRUE(link.open(QString::fromStdString(pty.path())));
    const std::size_t total = std::size_t(2) << 20;
    const auto bytes = counting(total);
    std::atomic<bool> stop{false};
    std::thread writer([&] {
        std::size_t done = 0;
        while (done < total && !stop) {
            const ssize_t n = ::write(pty.masterFd(), bytes.data() + done, total - done);
            if (n > 0) {
                done += static_cast<std::size_t>(n);
            } else if (n < 0 && errno != EAGAIN) {
                return;
            } else {
                pollfd out{pty.masterFd(), POLLOUT, 0};
                ::poll(&out, 1, 100);
            }
        }
    });
    qint64 mostWaiting = 0;
    const QByteArray got = readAllThrough(link, total, 139, &mostWaiting);
    stop = true;
    writer.join();
    EXPECT_EQ(got.size(), static_cast<qsizetype>(total));
    EXPECT_TRUE(got == asBytes(bytes)) << "every byte, in order";
    EXPECT_LE(mostWaiting, QtSerialLink::kMaxBacklog);
}

TEST(SerialBacklog, ReadWithATimeOutGetsEveryByteHoweverLong) {
    PtyPair pty;
    QtSerialLink link;
    ASSERT_TRUE(link.open(QString::fromStdString(pty.path())));
    QSignalSpy data(&link, &SerialLink::dataReceived);
    const int count = 3 * QtSerialLink::kMaxBacklog;
    link.read(count, 3000);
    const auto bytes = counting(static_cast<std::size_t>(count) + 100);
    // In pieces, so that the terminal's own buffer never overflows.
    for (std::size_t sent = 0; sent < bytes.size(); sent += 1024) {
        pty.write(std::vector<unsigned char>(
            bytes.begin() + static_cast<std::ptrdiff_t>(sent),
            bytes.begin() + static_cast<std::ptrdiff_t>(std::min(bytes.size(), sent + 1024))));
        QTest::qWait(1);
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return data.count() == 1; }, 3000));
    EXPECT_EQ(data.at(0).at(0).toByteArray(), asBytes(bytes).left(count));
}

TEST(SerialBacklog, InputResetAfterAFullBacklogLetsTheNextReadThrough) {
    PtyPair pty;
    QtSerialLink link;
    ASSERT_TRUE(link.open(QString::fromStdString(pty.path())));
    for (int i = 0; i < 20; ++i) {
        pty.write(counting(1024));
        QTest::qWait(2);
    }
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return link.bytesWaiting() == QtSerialLink::kMaxBacklog; }, 2000));
    // The hold ends as the program resumes: input reset, then a fresh two-byte read.
    link.resetInput();
    EXPECT_EQ(link.bytesWaiting(), 0);
    QSignalSpy data(&link, &SerialLink::dataReceived);
    link.read(2, 0);
    test::runPendingEvents();
    pty.write({0xFE, 0x01});
    ASSERT_TRUE(QTest::qWaitFor([&] { return data.count() == 1; }, 2000));
    EXPECT_EQ(data.at(0).at(0).toByteArray(), QByteArray("\xFE\x01", 2));
}
