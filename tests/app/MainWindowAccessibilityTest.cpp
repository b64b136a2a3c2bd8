// What assistive technology and keyboard users get of the main window: the names, values and
// descriptions of its controls, the focus chain, and working every control from the keyboard.
#include "app/LiveWindowFixture.h"
#include "common/ModalWindows.h"
#include "storage/frmFile.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/Slide.h"

#include <QAccessible>
#include <QAccessibleValueInterface>
#include <QApplication>
#include <QSet>

using namespace zorvik;
using zorvik::test::LiveWindowFixture;
using zorvik::test::rampSamples;
using zorvik::test::stateWith;

namespace {

QString accessibleText(QObject* o, QAccessible::Text t) {
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(o);
    return a ? a->text(t) : QStringLiteral("<no interface>");
}

class MainWindowAccess : public LiveWindowFixture {
protected:
    /// A running window holding a stored trace: every control of the panel is enabled.
    frmMain& everythingEnabled() {
        frmMain& w = running();
        feed(stateWith(0x04, 6), rampSamples());
        w.panel().CWBStoreRef->setValue(true);
        return w;
    }

    /// The operable controls of the panel, each with the name a screen reader gives it.
    static QList<QPair<QWidget*, QString>> namedControls(frmMain& w) {
        return {{w.panel().CWBPwr, "POWER"},        {w.panel().CWBStoreRef, "STORE"},
                {w.panel().CWBRef, "REF"},          {w.panel().CWBFile, "FILE"},
                {w.panel().CWBMenu, "MENU"},        {w.panel().CWBPrint, "PRINT"},
                {w.panel().CWBHelp, "HELP"},        {w.panel().CWBVCursors, "V-CURS"},
                {w.panel().CWBHCursors, "H-CURS"},  {w.panel().CWBCHaCal, "CALX"},
                {w.panel().CWKChaLvl, "V-SCALE"},   {w.panel().CWKTimeRange, "H-SCALE"},
                {w.panel().CWSRange, "RANGE"},      {w.panel().CWSCoupling, "COUPLING"},
                {w.panel().CWSTrigger, "TRIGGER"},  {w.panel().CWBChaInv, "INVERT"},
                {w.panel().CWSCHaOffset, "OFFSET"}, {w.panel().CWSPan, "PAN"}};
    }

    /// Presses Tab from the focused widget until focus comes back round; the widgets visited.
    static QList<QWidget*> tabRound(QWidget* first) {
        QList<QWidget*> visited;
        first->setFocus(Qt::TabFocusReason);
        EXPECT_TRUE(QTest::qWaitFor([&] { return first->hasFocus(); }, 2000));
        visited << first;
        for (int i = 0; i < 100; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QWidget* now = QApplication::focusWidget();
            if (now == first || !now)
                break;
            visited << now;
        }
        return visited;
    }
};

} // namespace

TEST_F(MainWindowAccess, EveryControlIsNamedByItsCaptionOrHeading) {
    frmMain& w = start();
    for (const auto& [control, name] : namedControls(w))
        EXPECT_EQ(accessibleText(control, QAccessible::Name), name)
            << control->objectName().toStdString();
}

TEST_F(MainWindowAccess, KnobsAndSlidesExposeTheirValues) {
    frmMain& w = start();
    w.panel().CWKTimeRange->setValue(12);
    w.panel().CWKChaLvl->setValue(6);
    w.panel().CWSCHaOffset->setValue(-1.5);
    w.panel().CWSPan->setValue(20.0);
    EXPECT_EQ(accessibleText(w.panel().CWKTimeRange, QAccessible::Value), "1m");
    EXPECT_EQ(accessibleText(w.panel().CWKChaLvl, QAccessible::Value), ".5");
    EXPECT_EQ(accessibleText(w.panel().CWSCHaOffset, QAccessible::Value), "-1.50");
    EXPECT_EQ(accessibleText(w.panel().CWSPan, QAccessible::Value), "20.00");
    QAccessibleValueInterface* v =
        QAccessible::queryAccessibleInterface(w.panel().CWKTimeRange)->valueInterface();
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v->currentValue().toInt(), 12);
    EXPECT_EQ(v->minimumValue().toInt(), 1);
    EXPECT_EQ(v->maximumValue().toInt(), 16);
    v = QAccessible::queryAccessibleInterface(w.panel().CWSCHaOffset)->valueInterface();
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v->currentValue().toDouble(), -1.5);
    EXPECT_EQ(v->minimumValue().toDouble(), -4.0);
    EXPECT_EQ(v->maximumValue().toDouble(), 4.0);
    // Assistive technology may set a value too; the panel follows as if the user had.
    v->setCurrentValue(1.0);
    EXPECT_EQ(w.model().sngChaOffset, 1.0f);
    EXPECT_TRUE(w.panel().CWBChaCalLed->value());
}

TEST_F(MainWindowAccess, IndicatorsReadTheProbesSwitches) {
    frmMain& w = running();
    feed(stateWith(0x04, 6), rampSamples()); // 10 V range, DC, IN+
    EXPECT_EQ(accessibleText(w.panel().CWSRange, QAccessible::Value), "10");
    EXPECT_EQ(accessibleText(w.panel().CWSCoupling, QAccessible::Value), "DC");
    EXPECT_TRUE(accessibleText(w.panel().CWSTrigger, QAccessible::Value).startsWith("IN+"));
}

TEST_F(MainWindowAccess, ReadoutsAreNamedByTheirTextAndDescribedByTheirHeadings) {
    frmMain& w = start();
    EXPECT_EQ(accessibleText(w.panel().lblCVoltage, QAccessible::Description), "VOLTS");
    EXPECT_EQ(accessibleText(w.panel().lblCTime, QAccessible::Description), "TIME");
    EXPECT_EQ(accessibleText(w.panel().lblCFrequency, QAccessible::Description), "FREQUENCY");
    for (QLabel* l : {w.panel().lblCVoltage, w.panel().lblCTime, w.panel().lblCFrequency})
        EXPECT_EQ(accessibleText(l, QAccessible::Name), l->text());
    w.panel().CWKTimeRange->setValue(12);
    w.panel().CWBVCursors->setValue(true);
    w.panel().CWBHCursors->setValue(true);
    EXPECT_EQ(accessibleText(w.panel().lblCTime, QAccessible::Name), "1.000 mSec");
    EXPECT_EQ(accessibleText(w.panel().lblCFrequency, QAccessible::Name), "1.000 KHz");
    EXPECT_EQ(accessibleText(w.panel().lblCVoltage, QAccessible::Name), "20.00 V");
    w.panel().CWBVCursors->setValue(false);
    EXPECT_EQ(accessibleText(w.panel().lblCTime, QAccessible::Name), "");
    EXPECT_EQ(accessibleText(w.panel().lblCFrequency, QAccessible::Name), "");
    EXPECT_EQ(accessibleText(w.panel().lblCTime, QAccessible::Description), "TIME");
}

TEST_F(MainWindowAccess, StatusBarPanelsExposeTheirBareLabelsAtStartUp) {
    frmMain& w = start();
    EXPECT_EQ(accessibleText(w.panel().sbrBaudRate, QAccessible::Name), "Baud: ");
    EXPECT_EQ(accessibleText(w.panel().sbrComPort, QAccessible::Name), "Com: ");
    EXPECT_EQ(accessibleText(w.panel().sbrSampleRate, QAccessible::Name), "Sample Rate: ");
}

TEST_F(MainWindowAccess, StatusBarPanelsExposeTheLinksValues) {
    frmMain& w = running();
    feed(stateWith(0x04, 6), rampSamples());
    EXPECT_EQ(accessibleText(w.panel().sbrBaudRate, QAccessible::Name), "Baud: 19200");
    EXPECT_EQ(accessibleText(w.panel().sbrComPort, QAccessible::Name), "Com: 1");
    EXPECT_EQ(accessibleText(w.panel().sbrSampleRate, QAccessible::Name), "Sample Rate: 20Ks/s");
}

TEST_F(MainWindowAccess, TabReachesEveryControl) {
    frmMain& w = everythingEnabled();
    w.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&w));
    const QList<QWidget*> visited = tabRound(w.panel().CWBPwr);
    const QSet<QWidget*> reached(visited.begin(), visited.end());
    EXPECT_EQ(reached.size(), visited.size()) << "a control was visited twice in one round";
    for (const auto& [control, name] : namedControls(w))
        EXPECT_TRUE(reached.contains(control)) << name.toStdString();
    for (QWidget* other : std::initializer_list<QWidget*>{
             w.panel().CWGraph1, w.panel().CWSTrigInd, w.panel().CWBPwrLed, w.panel().CWBChaInvLed,
             w.panel().CWBChaCalLed})
        EXPECT_TRUE(reached.contains(other)) << other->objectName().toStdString();
    // Shift+Tab walks the same round backwards.
    QTest::keyClick(w.panel().CWBPwr, Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget(), visited.last());
}

TEST_F(MainWindowAccess, SpaceWorksTheButtons) {
    frmMain& w = start();
    w.panel().CWKTimeRange->setValue(12);
    w.panel().CWBVCursors->setFocus();
    QTest::keyClick(w.panel().CWBVCursors, Qt::Key_Space);
    EXPECT_TRUE(w.panel().CWBVCursors->value());
    EXPECT_EQ(w.panel().lblCTime->text(), "1.000 mSec");
    QTest::keyClick(w.panel().CWBVCursors, Qt::Key_Space);
    EXPECT_FALSE(w.panel().CWBVCursors->value());
    EXPECT_EQ(w.panel().lblCTime->text(), "");

    w.panel().CWSCHaOffset->setValue(2.0);
    w.panel().CWBCHaCal->setFocus();
    QTest::keyClick(w.panel().CWBCHaCal, Qt::Key_Space);
    EXPECT_EQ(w.panel().CWSCHaOffset->value(), 0.0);
    EXPECT_FALSE(w.panel().CWBChaCalLed->value());

    w.panel().CWBChaInv->setFocus();
    QTest::keyClick(w.panel().CWBChaInv, Qt::Key_Space);
    EXPECT_TRUE(w.panel().CWBChaInvLed->value());

    int files = 0;
    test::ModalWindows modal;
    modal.on<frmFile>([&](frmFile&) { ++files; });
    w.panel().CWBFile->setFocus();
    QTest::keyPress(w.panel().CWBFile, Qt::Key_Space);
    ASSERT_TRUE(QTest::qWaitFor([&] { return files == 1; }, 2000));
    QTest::keyRelease(w.panel().CWBFile, Qt::Key_Space);
}

TEST_F(MainWindowAccess, ArrowsTurnTheKnobsAndMoveTheSlides) {
    frmMain& w = start();
    w.panel().CWKTimeRange->setFocus();
    QTest::keyClick(w.panel().CWKTimeRange, Qt::Key_Right);
    EXPECT_EQ(w.panel().CWKTimeRange->value(), 4);
    EXPECT_EQ(w.model().lngDivPerSec, 500000);
    QTest::keyClick(w.panel().CWKTimeRange, Qt::Key_Left);
    QTest::keyClick(w.panel().CWKTimeRange, Qt::Key_Left);
    EXPECT_EQ(w.model().lngDivPerSec, 2000000);

    w.panel().CWKChaLvl->setFocus();
    QTest::keyClick(w.panel().CWKChaLvl, Qt::Key_Up);
    EXPECT_EQ(w.panel().CWKChaLvl->value(), 2);
    EXPECT_EQ(w.model().sngChaGain, 0.1f);

    w.panel().CWSCHaOffset->setFocus();
    QTest::keyClick(w.panel().CWSCHaOffset, Qt::Key_Up);
    EXPECT_DOUBLE_EQ(w.panel().CWSCHaOffset->value(), 0.1);
    EXPECT_EQ(w.model().sngChaOffset, 0.1f);
    QTest::keyClick(w.panel().CWSCHaOffset, Qt::Key_Down);
    EXPECT_EQ(w.panel().CWSCHaOffset->value(), 0.0);
    EXPECT_FALSE(w.panel().CWBChaCalLed->value());

    w.panel().CWSPan->setFocus();
    QTest::keyClick(w.panel().CWSPan, Qt::Key_Right);
    EXPECT_DOUBLE_EQ(w.panel().CWGraph1->axisMinimum("XAxis"), 0.5);
    QTest::keyClick(w.panel().CWSPan, Qt::Key_PageUp);
    EXPECT_DOUBLE_EQ(w.panel().CWGraph1->axisMinimum("XAxis"), 10.5);
    EXPECT_DOUBLE_EQ(w.panel().CWGraph1->axisMaximum("XAxis"), 20.5);
}
