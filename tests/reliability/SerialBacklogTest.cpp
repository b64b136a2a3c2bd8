// The serial link keeps a bounded backlog: input that waits unread beyond what a port's own
// buffer holds is dropped, oldest first, but never from the middle of a frame being read.
#include "common/PtyPair.h"
#include "instrument/QtSerialLink.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using namespace zorvik;
using zorvik::test::PtyPair;

namespace {

std::vector<unsigned char> counting(std::size_t size, unsigned first = 0) {
    std::vector<unsigned char> bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>((first + i) % 251);
    return bytes;
}

} // namespace

TEST(SerialBacklog, InputArrivingWhileNoReadIsArmedKeepsOnlyTheNewestBytes) {
    PtyPair pty;
    ASSERT_TRUE(pty.ok());
    QtSerialLink link;
    ASSERT_TRUE(link.open(QString::fromStdString(pty.path())));
    const std::size_t total = 20 * 4096;
    for (std::size_t sent = 0; sent < total; sent += 1024) {
        pty.write(counting(1024, static_cast<unsigned>(sent)));
        QTest::qWait(1);
    }
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            return link.bytesDiscarded() == static_cast<qint64>(total) - QtSerialLink::kMaxBacklog;
        },
        3000))
        << link.bytesDiscarded();
    QSignalSpy data(&link, &SerialLink::dataReceived);
    link.read(2, 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return data.count() == 1; }, 2000));
    const auto oldestKept = static_cast<unsigned>(total - QtSerialLink::kMaxBacklog);
    EXPECT_EQ(data.at(0).at(0).toByteArray(),
              QByteArray(reinterpret_cast<const char*>(counting(2, oldestKept).data()), 2));
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
    EXPECT_EQ(data.at(0).at(0).toByteArray(),
              QByteArray(reinterpret_cast<const char*>(bytes.data()), count));
    EXPECT_EQ(link.bytesDiscarded(), 0);
}
