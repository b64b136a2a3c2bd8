// Tests of the graph's plots, axes, colours and paced redrawing.
#include "widgets/ScopeGraph.h"
#include "PanelTestSupport.h"
#include "common/EventLoop.h"
#include "widgets/PanelLook.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <array>
#include <cmath>
#include <cstdio>

using namespace zorvik;

namespace {

std::array<float, 128> ramp() {
    std::array<float, 128> ys{};
    for (int i = 0; i < 128; ++i)
        ys[i] = static_cast<float>((i - 31) * 0.0625);
    return ys;
}

} // namespace

TEST(ScopeGraph, StartsWithTheTwoPlotsAndAxesInDivisions) {
    ScopeGraph graph;
    EXPECT_EQ(graph.plotNames(), (QStringList{"CHa", "Ref"}));
    EXPECT_EQ(graph.axisMinimum("XAxis"), 0.0);
    EXPECT_EQ(graph.axisMaximum("XAxis"), 10.0);
    EXPECT_EQ(graph.axisMinimum("YAxis-1"), -4.0);
    EXPECT_EQ(graph.axisMaximum("YAxis-1"), 4.0);
    EXPECT_EQ(graph.plotAreaColor(), QColor(0, 0, 0));
    EXPECT_EQ(graph.cursorNames(), (QStringList{"Cursor1", "Cursor2", "Cursor3", "Cursor4"}));
    EXPECT_TRUE(graph.plotVisible("CHa"));
    EXPECT_TRUE(graph.plotData("CHa").x.isEmpty());
}

TEST(ScopeGraph, PlotYPlacesPointIAtFirstXPlusITimesTheStep) {
    ScopeGraph graph;
    const auto ys = ramp();
    ASSERT_TRUE(graph.plotY("CHa", ys.data(), 128, 0.0, 0.25));
    const ScopeGraph::PlotData d = graph.plotData("CHa");
    ASSERT_EQ(d.x.size(), 128);
    ASSERT_EQ(d.y.size(), 128);
    EXPECT_EQ(d.x[0], 0.0);
    EXPECT_EQ(d.x[1], 0.25);
    EXPECT_EQ(d.x[2], 0.5);
    EXPECT_EQ(d.x[127], 31.75);
    EXPECT_EQ(d.y[0], -1.9375);
    EXPECT_EQ(d.y[31], 0.0);
    EXPECT_EQ(d.y[127], 6.0);
}

TEST(ScopeGraph, PlotYComputesEveryXInDoublePrecision) {
    ScopeGraph graph;
    const std::array<float, 4> ys{1.0f, 2.0f, 3.0f, 4.0f};
    const double first = 0.1;
    const double step = 1.0 / 3.0; // a step with no exact binary form
    ASSERT_TRUE(graph.plotY("Ref", std::span<const float>(ys), first, step));
    const ScopeGraph::PlotData d = graph.plotData("Ref");
    ASSERT_EQ(d.x.size(), 4);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(d.x[i], first + i * step) << i;
}

TEST(ScopeGraph, PlotYWithANegativeStepKeepsEveryPointWithItsX) {
    ScopeGraph graph;
    const std::array<float, 3> ys{10.0f, 20.0f, 30.0f};
    ASSERT_TRUE(graph.plotY("CHa", ys.data(), 3, 5.0, -1.0));
    const ScopeGraph::PlotData d = graph.plotData("CHa");
    EXPECT_EQ(d.x, (QVector<double>{3.0, 4.0, 5.0}));
    EXPECT_EQ(d.y, (QVector<double>{30.0, 20.0, 10.0}));
}

TEST(ScopeGraph, RepeatedFramesReuseThePlotsStorage) {
    ScopeGraph graph;
    auto ys = ramp();
    graph.plotY("CHa", ys.data(), 128, 0.0, 0.08);
    const QCPGraphData* storage = &*graph.graph(0)->data()->constBegin();
    for (int frame = 0; frame < 50; ++frame) {
        ys[0] = static_cast<float>(frame);
        graph.plotY("CHa", ys.data(), 128, 0.0, 0.08);
    }
    EXPECT_EQ(&*graph.graph(0)->data()->constBegin(), storage);
    EXPECT_EQ(graph.plotData("CHa").y[0], 49.0);
}

TEST(ScopeGraph, ClearDataEmptiesOnePlotAndClearAllPlotsEveryPlot) {
    ScopeGraph graph;
    const auto ys = ramp();
    graph.plotY("CHa", ys.data(), 128, 0.0, 0.1);
    graph.plotY("Ref", ys.data(), 128, 0.0, 0.1);
    EXPECT_TRUE(graph.clearData("CHa"));
    EXPECT_TRUE(graph.plotData("CHa").x.isEmpty());
    EXPECT_EQ(graph.plotData("Ref").x.size(), 128);
    graph.clearAllPlots();
    EXPECT_TRUE(graph.plotData("Ref").x.isEmpty());
    EXPECT_EQ(graph.plotNames().size(), 2); // the plots themselves stay
}

TEST(ScopeGraph, UnknownNamesAreIgnoredSafely) {
    ScopeGraph graph;
    const float y = 1.0f;
    EXPECT_FALSE(graph.plotY("CHb", &y, 1, 0.0, 1.0));
    EXPECT_FALSE(graph.clearData("CHb"));
    EXPECT_FALSE(graph.setPlotVisible("CHb", false));
    EXPECT_FALSE(graph.plotVisible("CHb"));
    EXPECT_FALSE(graph.setPlotColor("CHb", Qt::red));
    EXPECT_FALSE(graph.plotColor("CHb").isValid());
    EXPECT_TRUE(graph.plotData("CHb").x.isEmpty());
    EXPECT_TRUE(std::isnan(graph.axisMinimum("ZAxis")));
    EXPECT_TRUE(std::isnan(graph.axisMaximum("ZAxis")));
    EXPECT_FALSE(graph.setAxisMinimum("ZAxis", 1.0));
    EXPECT_FALSE(graph.setAxisMaximum("ZAxis", 1.0));
    EXPECT_TRUE(std::isnan(graph.cursorX("Cursor5")));
    EXPECT_TRUE(std::isnan(graph.cursorY("Cursor5")));
    EXPECT_FALSE(graph.setCursorX("Cursor5", 1.0));
    EXPECT_FALSE(graph.setCursorY("Cursor5", 1.0));
    EXPECT_FALSE(graph.setCursorVisible("Cursor5", true));
    EXPECT_FALSE(graph.cursorVisible("Cursor5"));
    EXPECT_FALSE(graph.setCursorColor("Cursor5", Qt::red));
    EXPECT_FALSE(graph.cursorColor("Cursor5").isValid());
}

TEST(ScopeGraph, PlotYRefusesMissingValuesAndNonFiniteSteps) {
    ScopeGraph graph;
    const float y = 1.0f;
    EXPECT_FALSE(graph.plotY("CHa", nullptr, 4, 0.0, 1.0));
    EXPECT_FALSE(graph.plotY("CHa", &y, -1, 0.0, 1.0));
    EXPECT_FALSE(graph.plotY("CHa", &y, 1, 0.0, std::nan("")));
    EXPECT_FALSE(graph.plotY("CHa", &y, 1, INFINITY, 1.0));
    EXPECT_TRUE(graph.plotY("CHa", nullptr, 0, 0.0, 1.0)); // nothing to plot: an empty trace
}

TEST(ScopeGraph, AxisReportsAMinimumAboveItsMaximumExactlyAsSet) {
    // Moving the window right: the minimum is set first, then the maximum from it.
    ScopeGraph graph;
    ASSERT_TRUE(graph.setAxisMinimum("XAxis", 15.0));
    EXPECT_EQ(graph.axisMinimum("XAxis"), 15.0);
    EXPECT_EQ(graph.axisMaximum("XAxis"), 10.0);
    ASSERT_TRUE(graph.setAxisMaximum("XAxis", graph.axisMinimum("XAxis") + 10.0));
    EXPECT_EQ(graph.axisMaximum("XAxis"), 25.0);
    EXPECT_EQ(graph.xAxis->range().lower, 15.0);
    EXPECT_EQ(graph.xAxis->range().upper, 25.0);
}

TEST(ScopeGraph, PanningMovesTheWindowWithoutTouchingTheTraces) {
    ScopeGraph graph;
    const auto ys = ramp();
    graph.plotY("CHa", ys.data(), 128, 0.0, 0.5);
    const ScopeGraph::PlotData before = graph.plotData("CHa");
    graph.setAxisMinimum("XAxis", 37.5);
    graph.setAxisMaximum("XAxis", 47.5);
    const ScopeGraph::PlotData after = graph.plotData("CHa");
    EXPECT_EQ(after.x, before.x);
    EXPECT_EQ(after.y, before.y);
    EXPECT_EQ(graph.xAxis->range().lower, 37.5);
}

TEST(ScopeGraph, ColoursAndVisibilityOfPlotsAndPlotArea) {
    ScopeGraph graph;
    EXPECT_TRUE(graph.setPlotColor("Ref", QColor(10, 20, 30)));
    EXPECT_EQ(graph.plotColor("Ref"), QColor(10, 20, 30));
    EXPECT_TRUE(graph.setPlotVisible("Ref", false));
    EXPECT_FALSE(graph.plotVisible("Ref"));
    graph.setPlotAreaColor(QColor(0, 0, 64));
    EXPECT_EQ(graph.plotAreaColor(), QColor(0, 0, 64));
    graph.resize(200, 150);
    graph.replot(QCustomPlot::rpImmediateRefresh);
    const QImage picture = graph.grab().toImage();
    EXPECT_EQ(picture.pixelColor(graph.plotAreaRect().center() + QPoint(7, 9)), QColor(0, 0, 64));
}

TEST(ScopeGraph, EveryPixelOfThePictureIsPaintedOnEachReplot) {
    ScopeGraph graph;
    graph.resize(300, 200);
    graph.replot(QCustomPlot::rpImmediateRefresh);
    graph.setPlotAreaColor(QColor(200, 0, 0));
    graph.replot(QCustomPlot::rpImmediateRefresh);
    const QImage picture = graph.grab().toImage();
    const QRect area = graph.plotAreaRect();
    // The margin round the plot area in the panel's colour, the plot area in its own (away
    // from the graticule's lines), and nothing left over from the replot before.
    EXPECT_EQ(picture.pixelColor(0, 0), PanelLook::panelColor());
    EXPECT_EQ(picture.pixelColor(picture.width() - 1, picture.height() - 1),
              PanelLook::panelColor());
    EXPECT_EQ(picture.pixelColor(area.left() + 3, area.top() + 3), QColor(200, 0, 0));
    EXPECT_EQ(picture.pixelColor(area.right() - 3, area.bottom() - 3), QColor(200, 0, 0));
}

TEST(ScopeGraph, ABurstOfFramesCostsOneRedraw) {
    auto panel = test::makePanel(QSize(500, 400));
    auto* graph = new ScopeGraph(panel.get());
    graph->setGeometry(10, 10, 480, 380);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !graph->redrawPending(); }, 2000));
    test::runPendingEvents(); // any redraw from showing the window is done
    ASSERT_FALSE(graph->redrawPending());
    const int before = graph->replotCount();
    auto ys = ramp();
    for (int frame = 0; frame < 200; ++frame) {
        ys[5] = static_cast<float>(frame);
        graph->plotY("CHa", ys.data(), 128, 0.0, 0.08);
        graph->redraw();
    }
    EXPECT_TRUE(graph->redrawPending());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !graph->redrawPending(); }, 2000));
    EXPECT_EQ(graph->replotCount(), before + 1);
    EXPECT_EQ(graph->plotData("CHa").y[5], 199.0); // the newest frame is the one shown
}

TEST(ScopeGraph, DrawsTheTraceInItsColourOnTheBlackPlotArea) {
    auto panel = test::makePanel(QSize(420, 340));
    auto* graph = new ScopeGraph(panel.get());
    graph->setGeometry(10, 10, 400, 320);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    std::array<float, 128> flat{};
    flat.fill(2.0f);
    graph->plotY("CHa", flat.data(), 128, 0.0, 10.0 / 127.0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !graph->redrawPending(); }, 2000));
    const QImage shot = graph->grab().toImage();
    const int row = qRound(graph->yAxis->coordToPixel(2.0));
    const auto yellow = [](const QColor& c) { return test::near(c, QColor(255, 255, 0), 60); };
    EXPECT_GT(test::countPixels(shot, QRect(0, row - 1, 400, 3), yellow), 300);
    EXPECT_EQ(shot.pixelColor(40, 30), QColor(0, 0, 0)); // plot area between grid lines
}

TEST(ScopeGraph, TwoThousandFramesOfBothTracesArePlottedWellWithinASecond) {
    auto panel = test::makePanel(QSize(500, 400));
    auto* graph = new ScopeGraph(panel.get());
    graph->setGeometry(10, 10, 480, 380);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    auto ys = ramp();
    QElapsedTimer clock;
    clock.start();
    for (int frame = 0; frame < 2000; ++frame) {
        ys[0] = static_cast<float>(frame);
        graph->plotY("CHa", ys.data(), 128, 0.0, 0.08);
        graph->plotY("Ref", ys.data(), 128, 0.0, 0.08);
    }
    const qint64 plotting = clock.elapsed();
    clock.restart();
    for (int i = 0; i < 20; ++i)
        graph->replot();
    const double perReplot = clock.elapsed() / 20.0;
    RecordProperty("plotting_2000_frames_ms", static_cast<int>(plotting));
    RecordProperty("replot_us", static_cast<int>(perReplot * 1000));
    std::printf("2000 frames of two traces: %lld ms; one replot: %.2f ms\n",
                static_cast<long long>(plotting), perReplot);
    EXPECT_LT(plotting, 1000);
}

TEST(ScopeGraph, ATraceFarBeyondThePlotAreaStillRedrawsQuickly) {
    auto panel = test::makePanel(QSize(500, 400));
    auto* graph = new ScopeGraph(panel.get());
    graph->setGeometry(10, 10, 480, 380);
    ASSERT_TRUE(test::showAndWait(panel.get()));
    std::array<float, 128> ys{};
    for (int i = 0; i < 128; ++i) // 31 counts at .2 V/div on the 10 V range: +-246 divisions
        ys[i] = static_cast<float>(246.0 * std::sin(i * 0.2));
    graph->plotY("CHa", ys.data(), 128, 0.0, 0.08);
    graph->plotY("Ref", ys.data(), 128, 0.0, 0.08);
    graph->replot();
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 20; ++i)
        graph->replot();
    const double perReplot = clock.elapsed() / 20.0;
    std::printf("one replot with traces far off the plot: %.2f ms\n", perReplot);
    EXPECT_LT(perReplot, 12.0); // a wide antialiased pen takes about 17 ms here
}
