// The program's graph and scales take strict names: a plot, cursor, axis or pointer name they
// do not know is reported (logged; in a debug build an assertion stops the program) instead of
// doing nothing unnoticed. Without strict names a miss stays silent, as a control's own tests
// expect.
#include "widgets/IndicatorSlide.h"
#include "widgets/ScopeGraph.h"

#include <QtGlobal>
#include <cmath>
#include <gtest/gtest.h>

using namespace zorvik;

namespace {

QStringList captured;

void capture(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtWarningMsg)
        captured << text;
}

/// Collects the warnings logged while it lives.
struct WarningLog {
    WarningLog() {
        captured.clear();
        previous = qInstallMessageHandler(capture);
    }
    ~WarningLog() { qInstallMessageHandler(previous); }
    QtMessageHandler previous;
};

} // namespace

TEST(StrictNames, WithoutThemAMissIsSilent) {
    ScopeGraph graph;
    IndicatorSlide side;
    WarningLog log;
    EXPECT_FALSE(graph.setCursorX("Cursor9", 1.0));
    EXPECT_FALSE(graph.setPlotVisible("CHb", true));
    EXPECT_TRUE(std::isnan(graph.axisMinimum("ZAxis")));
    EXPECT_FALSE(side.setPointerValue("Nope", 1.0));
    EXPECT_TRUE(captured.isEmpty()) << captured.join('\n').toStdString();
}

TEST(StrictNames, KnownNamesAreNeverReported) {
    ScopeGraph graph;
    graph.setObjectName("CWGraph1");
    graph.setStrictNames(true);
    IndicatorSlide side;
    side.setStrictNames(true);
    ASSERT_TRUE(side.addPointer("TrigLvl"));
    WarningLog log;
    EXPECT_TRUE(graph.setCursorX("Cursor1", 1.0));
    EXPECT_TRUE(graph.setPlotVisible("Ref", true));
    EXPECT_EQ(graph.axisMinimum("XAxis"), 0.0);
    EXPECT_TRUE(side.setPointerValue("TrigLvl", 1.0));
    // Adding a pointer looks its name up to refuse a second one: a free name is no miss.
    EXPECT_TRUE(side.addPointer("CHa_Zero"));
    EXPECT_TRUE(captured.isEmpty()) << captured.join('\n').toStdString();
}

#ifdef QT_NO_DEBUG
TEST(StrictNames, AMissIsLoggedWithTheControlAndTheName) {
    ScopeGraph graph;
    graph.setObjectName("CWGraph1");
    graph.setStrictNames(true);
    IndicatorSlide side;
    side.setObjectName("CWSTrigger");
    side.setStrictNames(true);
    WarningLog log;
    EXPECT_FALSE(graph.setCursorX("Cursor9", 1.0));
    EXPECT_FALSE(graph.setPlotVisible("CHb", true));
    EXPECT_TRUE(std::isnan(graph.axisMinimum("ZAxis")));
    EXPECT_FALSE(side.setPointerValue("Pointer-2", 1.0));
    EXPECT_EQ(captured, (QStringList{
                            "CWGraph1: no plot, axis or cursor is named \"Cursor9\"",
                            "CWGraph1: no plot, axis or cursor is named \"CHb\"",
                            "CWGraph1: no plot, axis or cursor is named \"ZAxis\"",
                            "CWSTrigger: no pointer is named \"Pointer-2\"",
                        }));
}
#else
TEST(StrictNamesDeathTest, AMissStopsADebugBuild) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            ScopeGraph graph;
            graph.setStrictNames(true);
            (void)graph.setCursorX("Cursor9", 1.0);
        },
        "a name the graph does not know");
    EXPECT_DEATH(
        {
            IndicatorSlide side;
            side.setStrictNames(true);
            (void)side.setPointerValue("Pointer-2", 1.0);
        },
        "a pointer name the scale does not know");
}
#endif
