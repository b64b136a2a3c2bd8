// Tests of the graph's cursors: positions, visibility, colours, mouse dragging and keyboard moves.
#include "PanelTestSupport.h"
#include "widgets/ScopeGraph.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace zorvik;

namespace {

struct GraphOnPanel {
    std::unique_ptr<QWidget> panel = test::makePanel(QSize(520, 420));
    ScopeGraph* graph = new ScopeGraph(panel.get());
    GraphOnPanel() { graph->setGeometry(10, 10, 500, 400); }
    QPoint atX(double x, double y = 0.0) const {
        return QPoint(qRound(graph->xAxis->coordToPixel(x)), qRound(graph->yAxis->coordToPixel(y)));
    }
};

} // namespace

TEST(ScopeGraphCursors, PositionsVisibilityAndColoursAreKept) {
    ScopeGraph graph;
    EXPECT_FALSE(graph.cursorVisible("Cursor1")); // hidden until a cursor button shows them
    EXPECT_TRUE(graph.setCursorX("Cursor1", 3.0));
    EXPECT_TRUE(graph.setCursorX("Cursor2", 4.0));
    EXPECT_TRUE(graph.setCursorY("Cursor3", -3.0));
    EXPECT_TRUE(graph.setCursorY("Cursor4", -2.0));
    EXPECT_EQ(graph.cursorX("Cursor1"), 3.0);
    EXPECT_EQ(graph.cursorX("Cursor2"), 4.0);
    EXPECT_EQ(graph.cursorY("Cursor3"), -3.0);
    EXPECT_EQ(graph.cursorY("Cursor4"), -2.0);
    EXPECT_TRUE(graph.setCursorVisible("Cursor3", true));
    EXPECT_TRUE(graph.cursorVisible("Cursor3"));
    EXPECT_TRUE(graph.setCursorVisible("Cursor3", false));
    EXPECT_EQ(graph.cursorY("Cursor3"), -3.0); // hiding keeps the position
    EXPECT_TRUE(graph.setCursorColor("Cursor2", QColor(1, 2, 3)));
    EXPECT_EQ(graph.cursorColor("Cursor2"), QColor(1, 2, 3));
}

TEST(ScopeGraphCursors, CursorsOnTopOfEachOtherAreAllowed) {
    ScopeGraph graph;
    graph.setCursorX("Cursor1", 2.5);
    graph.setCursorX("Cursor2", 2.5);
    EXPECT_EQ(graph.cursorX("Cursor1") - graph.cursorX("Cursor2"), 0.0);
}

TEST(ScopeGraphCursors, SettingAPositionFromTheProgramDoesNotEmitCursorChanged) {
    ScopeGraph graph;
    QSignalSpy spy(&graph, &ScopeGraph::cursorChanged);
    graph.setCursorX("Cursor1", 1.0);
    graph.setCursorY("Cursor4", 1.0);
    graph.setCursorVisible("Cursor1", true);
    EXPECT_EQ(spy.count(), 0);
}

TEST(ScopeGraphCursors, DraggingAVerticalCursorEmitsCursorChangedWithTheNewX) {
    GraphOnPanel g;
    g.graph->setCursorX("Cursor1", 2.0);
    g.graph->setCursorVisible("Cursor1", true);
    ASSERT_TRUE(test::showAndWait(g.panel.get()));
    QSignalSpy spy(g.graph, &ScopeGraph::cursorChanged);
    QTest::mousePress(g.graph, Qt::LeftButton, {}, g.atX(2.0) + QPoint(2, 0));
    EXPECT_EQ(g.graph->cursorX("Cursor1"), 2.0); // taking it does not move it
    const QPoint target = g.atX(6.0, 1.0);
    QTest::mouseMove(g.graph, target);
    EXPECT_EQ(g.graph->cursorX("Cursor1"), g.graph->xAxis->pixelToCoord(target.x()));
    EXPECT_NEAR(g.graph->cursorX("Cursor1"), 6.0, 0.02);
    QTest::mouseRelease(g.graph, Qt::LeftButton, {}, target);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toString(), "Cursor1");
    EXPECT_EQ(g.graph->cursorY("Cursor1"), 0.0); // a vertical line moves in X only
}

TEST(ScopeGraphCursors, DraggedCursorStopsAtTheEdgeOfTheVisibleRange) {
    GraphOnPanel g;
    g.graph->setAxisMinimum("XAxis", 20.0);
    g.graph->setAxisMaximum("XAxis", 30.0);
    g.graph->setCursorX("Cursor2", 21.0);
    g.graph->setCursorVisible("Cursor2", true);
    ASSERT_TRUE(test::showAndWait(g.panel.get()));
    QTest::mousePress(g.graph, Qt::LeftButton, {}, g.atX(21.0));
    QTest::mouseMove(g.graph, QPoint(2000, 100));
    EXPECT_EQ(g.graph->cursorX("Cursor2"), 30.0);
    QTest::mouseMove(g.graph, QPoint(-500, 100));
    EXPECT_EQ(g.graph->cursorX("Cursor2"), 20.0);
    QTest::mouseRelease(g.graph, Qt::LeftButton, {}, QPoint(-500, 100));
}

TEST(ScopeGraphCursors, DraggingAHorizontalCursorMovesItsY) {
    GraphOnPanel g;
    g.graph->setCursorY("Cursor3", -3.0);
    g.graph->setCursorVisible("Cursor3", true);
    ASSERT_TRUE(test::showAndWait(g.panel.get()));
    QSignalSpy spy(g.graph, &ScopeGraph::cursorChanged);
    QTest::mousePress(g.graph, Qt::LeftButton, {}, g.atX(5.0, -3.0));
    const QPoint target = g.atX(5.0, 1.5);
    QTest::mouseMove(g.graph, target);
    QTest::mouseRelease(g.graph, Qt::LeftButton, {}, target);
    EXPECT_EQ(g.graph->cursorY("Cursor3"), g.graph->yAxis->pixelToCoord(target.y()));
    EXPECT_NEAR(g.graph->cursorY("Cursor3"), 1.5, 0.03);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toString(), "Cursor3");
}

TEST(ScopeGraphCursors, AHiddenCursorCannotBeTaken) {
    GraphOnPanel g;
    g.graph->setCursorX("Cursor1", 2.0);
    ASSERT_TRUE(test::showAndWait(g.panel.get()));
    QSignalSpy spy(g.graph, &ScopeGraph::cursorChanged);
    QTest::mousePress(g.graph, Qt::LeftButton, {}, g.atX(2.0));
    QTest::mouseMove(g.graph, g.atX(7.0));
    QTest::mouseRelease(g.graph, Qt::LeftButton, {}, g.atX(7.0));
    EXPECT_EQ(g.graph->cursorX("Cursor1"), 2.0);
    EXPECT_EQ(spy.count(), 0);
}

TEST(ScopeGraphCursors, PressAwayFromEveryCursorTakesNone) {
    GraphOnPanel g;
    g.graph->setCursorX("Cursor1", 2.0);
    g.graph->setCursorVisible("Cursor1", true);
    ASSERT_TRUE(test::showAndWait(g.panel.get()));
    QSignalSpy spy(g.graph, &ScopeGraph::cursorChanged);
    QTest::mousePress(g.graph, Qt::LeftButton, {}, g.atX(5.0));
    QTest::mouseMove(g.graph, g.atX(8.0));
    QTest::mouseRelease(g.graph, Qt::LeftButton, {}, g.atX(8.0));
    EXPECT_EQ(g.graph->cursorX("Cursor1"), 2.0);
    EXPECT_EQ(spy.count(), 0);
}

TEST(ScopeGraphCursors, KeysChooseACursorAndMoveIt) {
    GraphOnPanel g;
    g.graph->setCursorX("Cursor2", 2.0);
    g.graph->setCursorY("Cursor4", -2.0);
    for (const char* name : {"Cursor2", "Cursor4"})
        g.graph->setCursorVisible(name, true);
    ASSERT_TRUE(test::showAndWait(g.panel.get()));
    g.graph->setFocus();
    QSignalSpy spy(g.graph, &ScopeGraph::cursorChanged);

    QTest::keyClick(g.graph, Qt::Key_2);
    EXPECT_EQ(g.graph->selectedCursor(), "Cursor2");
    QTest::keyClick(g.graph, Qt::Key_Right);
    EXPECT_DOUBLE_EQ(g.graph->cursorX("Cursor2"), 2.2);
    QTest::keyClick(g.graph, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_DOUBLE_EQ(g.graph->cursorX("Cursor2"), 2.18);
    QTest::keyClick(g.graph, Qt::Key_Up); // a vertical line does not move up
    EXPECT_DOUBLE_EQ(g.graph->cursorX("Cursor2"), 2.18);

    QTest::keyClick(g.graph, Qt::Key_4);
    QTest::keyClick(g.graph, Qt::Key_Up);
    EXPECT_DOUBLE_EQ(g.graph->cursorY("Cursor4"), -1.8);
    QTest::keyClick(g.graph, Qt::Key_Escape);
    EXPECT_EQ(g.graph->selectedCursor(), "");
    QTest::keyClick(g.graph, Qt::Key_Up);
    EXPECT_DOUBLE_EQ(g.graph->cursorY("Cursor4"), -1.8);

    ASSERT_EQ(spy.count(), 3);
    EXPECT_EQ(spy.at(0).at(0).toString(), "Cursor2");
    EXPECT_EQ(spy.at(2).at(0).toString(), "Cursor4");
}

TEST(ScopeGraphCursors, CursorsAreDrawnInTheirColoursOnlyWhileVisible) {
    GraphOnPanel g;
    const QColor magenta(255, 0, 255);
    g.graph->setCursorColor("Cursor1", magenta);
    g.graph->setCursorX("Cursor1", 5.5);
    ASSERT_TRUE(test::showAndWait(g.panel.get()));
    const auto isCursor = [&](const QColor& c) { return test::near(c, magenta, 20); };
    const int column = qRound(g.graph->xAxis->coordToPixel(5.5));
    const QRect band(column - 2, 0, 5, 400);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !g.graph->redrawPending(); }, 2000));
    EXPECT_EQ(test::countPixels(g.graph->grab().toImage(), band, isCursor), 0);
    g.graph->setCursorVisible("Cursor1", true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !g.graph->redrawPending(); }, 2000));
    EXPECT_GT(test::countPixels(g.graph->grab().toImage(), band, isCursor), 100);
}

TEST(ScopeGraphCursors, KeyboardMovesStopAtTheEdgeOfTheVisibleRange) {
    GraphOnPanel g;
    g.graph->setCursorX("Cursor1", 9.9);
    g.graph->setCursorVisible("Cursor1", true);
    ASSERT_TRUE(test::showAndWait(g.panel.get()));
    g.graph->setFocus();
    QSignalSpy spy(g.graph, &ScopeGraph::cursorChanged);
    QTest::keyClick(g.graph, Qt::Key_1);
    QTest::keyClick(g.graph, Qt::Key_Right);
    EXPECT_EQ(g.graph->cursorX("Cursor1"), 10.0);
    QTest::keyClick(g.graph, Qt::Key_Right); // at the edge: no move, no signal
    EXPECT_EQ(g.graph->cursorX("Cursor1"), 10.0);
    EXPECT_EQ(spy.count(), 1);
}
