// LineControl: a line between two end points in the parent's twips.
#include "support/LineControl.h"

#include <QImage>
#include <QWidget>
#include <gtest/gtest.h>

namespace zorvik::test {
namespace {

TEST(LineControl, GeometryFollowsTheEndPoints) {
    QWidget parent;
    parent.resize(400, 300);
    LineControl line(&parent);
    line.setEndPoints(150, 300, 3000, 300); // (10, 20) to (200, 20) pixels

    EXPECT_EQ(line.startPixel(), QPoint(10, 20));
    EXPECT_EQ(line.endPixel(), QPoint(200, 20));
    EXPECT_EQ(line.geometry(), QRect(QPoint(9, 19), QPoint(201, 21)));

    line.setY2(1500); // slant down to (200, 100)
    EXPECT_EQ(line.geometry(), QRect(QPoint(9, 19), QPoint(201, 101)));
    line.setX1(4500); // start now right of the end: (300, 20)
    EXPECT_EQ(line.geometry(), QRect(QPoint(199, 19), QPoint(301, 101)));
}

TEST(LineControl, WiderPenWidensTheWidget) {
    QWidget parent;
    LineControl line(&parent);
    line.setEndPoints(150, 300, 3000, 300);
    line.setBorderWidth(4);
    EXPECT_EQ(line.geometry(), QRect(QPoint(8, 18), QPoint(202, 22)));
    line.setBorderWidth(0);
    EXPECT_EQ(line.BorderWidth(), 1);
}

TEST(LineControl, DrawsInItsColourAlongTheLine) {
    QWidget parent;
    parent.resize(400, 300);
    parent.setStyleSheet("background: white");
    parent.setAutoFillBackground(true);
    LineControl line(&parent);
    line.setEndPoints(150, 300, 3000, 300);
    line.setBorderColor(QColor(0, 200, 0));

    const QImage picture = parent.grab().toImage();
    EXPECT_EQ(QColor(picture.pixel(100, 20)), QColor(0, 200, 0));
    EXPECT_NE(QColor(picture.pixel(100, 23)), QColor(0, 200, 0));
    EXPECT_NE(QColor(picture.pixel(205, 20)), QColor(0, 200, 0));
}

TEST(LineControl, LetsClicksThroughToWhatLiesBeneath) {
    LineControl line;
    EXPECT_TRUE(line.testAttribute(Qt::WA_TransparentForMouseEvents));
}

} // namespace
} // namespace zorvik::test
