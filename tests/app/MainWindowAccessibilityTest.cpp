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
        w.CWBStoreRef->setValue(true);
        return w;
    }

    /// The operable controls of the panel, each with the name a screen reader gives it.
    static QList<QPair<QWidget*, QString>> namedControls(frmMain& w) {
        return {{w.CWBPwr, "POWER"},     {w.CWBStoreRef, "STORE"},    {w.CWBRef, "REF"},
                {w.CWBFile, "FILE"},     {w.CWBMenu, "MENU"},         {w.CWBPrint, "PRINT"},
                {w.CWBHelp, "HELP"},     {w.CWBVCursors, "V-CURS"},   {w.CWBHCursors, "H-CURS"},
                {w.CWBCHaCal, "CALX"},   {w.CWKChaLvl, "V-SCALE"},    {w.CWKTimeRange, "H-SCALE"},
                {w.CWSRange, "RANGE"},   {w.CWSCoupling, "COUPLING"}, {w.CWSTrigger, "TRIGGER"},
                {w.CWBChaInv, "INVERT"}, {w.CWSCHaOffset, "OFFSET"},  {w.CWSPan, "PAN"}};
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
    w.CWKTimeRange->setValue(12);
    w.CWKChaLvl->setValue(6);
    w.CWSCHaOffset->setValue(-1.5);
    w.CWSPan->setValue(20.0);
    EXPECT_EQ(accessibleText(w.CWKTimeRange, QAccessible::Value), "1m");
    EXPECT_EQ(accessibleText(w.CWKChaLvl, QAccessible::Value), ".5");
    EXPECT_EQ(accessibleText(w.CWSCHaOffset, QAccessible::Value), "-1.50");
    EXPECT_EQ(accessibleText(w.CWSPan, QAccessible::Value), "20.00");
    QAccessibleValueInterface* v =
        QAccessible::queryAccessibleInterface(w.CWKTimeRange)->valueInterface();
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v->currentValue().toInt(), 12);
    EXPECT_EQ(v->minimumValue().toInt(), 1);
    EXPECT_EQ(v->maximumValue().toInt(), 16);
    v = QAccessible::queryAccessibleInterface(w.CWSCHaOffset)->valueInterface();
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v->currentValue().toDouble(), -1.5);
    EXPECT_EQ(v->minimumValue().toDouble(), -4.0);
    EXPECT_EQ(v->maximumValue().toDouble(), 4.0);
    // Assistive technology may set a value too; the panel follows as if the user had.
    v->setCurrentValue(1.0);
    EXPECT_EQ(w.model().sngChaOffset, 1.0f);
    EXPECT_TRUE(w.CWBChaCalLed->value());
}

TEST_F(MainWindowAccess, IndicatorsReadTheProbesSwitches) {
    frmMain& w = running();
    feed(stateWith(0x04, 6), rampSamples()); // 10 V range, DC, IN+
    EXPECT_EQ(accessibleText(w.CWSRange, QAccessible::Value), "10");
    EXPECT_EQ(accessibleText(w.CWSCoupling, QAccessible::Value), "DC");
    EXPECT_TRUE(accessibleText(w.CWSTrigger, QAccessible::Value).startsWith("IN+"));
}

TEST_F(MainWindowAccess, ReadoutsAreNamedByTheirTextAndDescribedByTheirHeadings) {
    frmMain& w = start();
    EXPECT_EQ(accessibleText(w.lblCVoltage, QAccessible::Description), "VOLTS");
    EXPECT_EQ(accessibleText(w.lblCTime, QAccessible::Description), "TIME");
    EXPECT_EQ(accessibleText(w.lblCFrequency, QAccessible::Description), "FREQUENCY");
    for (QLabel* l : {w.lblCVoltage, w.lblCTime, w.lblCFrequency})
        EXPECT_EQ(accessibleText(l, QAccessible::Name), l->text());
    w.CWKTimeRange->setValue(12);
    w.CWBVCursors->setValue(true);
    w.CWBHCursors->setValue(true);
    EXPECT_EQ(accessibleText(w.lblCTime, QAccessible::Name), "1.000 mSec");
    EXPECT_EQ(accessibleText(w.lblCFrequency, QAccessible::Name), "1.000 KHz");
    EXPECT_EQ(accessibleText(w.lblCVoltage, QAccessible::Name), "20.00 V");
    w.CWBVCursors->setValue(false);
    EXPECT_EQ(accessibleText(w.lblCTime, QAccessible::Name), "");
    EXPECT_EQ(accessibleText(w.lblCFrequency, QAccessible::Name), "");
    EXPECT_EQ(accessibleText(w.lblCTime, QAccessible::Description), "TIME");
}

TEST_F(MainWindowAccess, StatusBarPanelsExposeTheirBareLabelsAtStartUp) {
    frmMain& w = start();
    EXPECT_EQ(accessibleText(w.sbrBaudRate, QAccessible::Name), "Baud: ");
    EXPECT_EQ(accessibleText(w.sbrComPort, QAccessible::Name), "Com: ");
    EXPECT_EQ(accessibleText(w.sbrSampleRate, QAccessible::Name), "Sample Rate: ");
}

TEST_F(MainWindowAccess, StatusBarPanelsExposeTheLinksValues) {
    frmMain& w = running();
    feed(stateWith(0x04, 6), rampSamples());
    EXPECT_EQ(accessibleText(w.sbrBaudRate, QAccessible::Name), "Baud: 19200");
    EXPECT_EQ(accessibleText(w.sbrComPort, QAccessible::Name), "Com: 1");
    EXPECT_EQ(accessibleText(w.sbrSampleRate, QAccessible::Name), "Sample Rate: 20Ks/s");
}

TEST_F(MainWindowAccess, TabReachesEveryControl) {
    frmMain& w = everythingEnabled();
    w.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&w));
    const QList<QWidget*> visited = tabRound(w.CWBPwr);
    const QSet<QWidget*> reached(visited.begin(), visited.end());
    EXPECT_EQ(reached.size(), visited.size()) << "a control was visited twice in one round";
    for (const auto& [control, name] : namedControls(w))
        EXPECT_TRUE(reached.contains(control)) << name.toStdString();
    for (QWidget* other : std::initializer_list<QWidget*>{w.CWGraph1, w.CWSTrigInd, w.CWBPwrLed,
                                                          w.CWBChaInvLed, w.CWBChaCalLed})
        EXPECT_TRUE(reached.contains(other)) << other->objectName().toStdString();
    // Shift+Tab walks the same round backwards.
    QTest::keyClick(w.CWBPwr, Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget(), visited.last());
}

TEST_F(MainWindowAccess, SpaceWorksTheButtons) {
    frmMain& w = start();
    w.CWKTimeRange->setValue(12);
    w.CWBVCursors->setFocus();
    QTest::keyClick(w.CWBVCursors, Qt::Key_Space);
    EXPECT_TRUE(w.CWBVCursors->value());
    EXPECT_EQ(w.lblCTime->text(), "1.000 mSec");
    QTest::keyClick(w.CWBVCursors, Qt::Key_Space);
    EXPECT_FALSE(w.CWBVCursors->value());
    EXPECT_EQ(w.lblCTime->text(), "");

    w.CWSCHaOffset->setValue(2.0);
    w.CWBCHaCal->setFocus();
    QTest::keyClick(w.CWBCHaCal, Qt::Key_Space);
    EXPECT_EQ(w.CWSCHaOffset->value(), 0.0);
    EXPECT_FALSE(w.CWBChaCalLed->value());

    w.CWBChaInv->setFocus();
    QTest::keyClick(w.CWBChaInv, Qt::Key_Space);
    EXPECT_TRUE(w.CWBChaInvLed->value());

    int files = 0;
    test::ModalWindows modal;
    modal.on<frmFile>([&](frmFile&) { ++files; });
    w.CWBFile->setFocus();
    QTest::keyPress(w.CWBFile, Qt::Key_Space);
    ASSERT_TRUE(QTest::qWaitFor([&] { return files == 1; }, 2000));
    QTest::keyRelease(w.CWBFile, Qt::Key_Space);
}

TEST_F(MainWindowAccess, ArrowsTurnTheKnobsAndMoveTheSlides) {
    frmMain& w = start();
    w.CWKTimeRange->setFocus();
    QTest::keyClick(w.CWKTimeRange, Qt::Key_Right);
    EXPECT_EQ(w.CWKTimeRange->value(), 4);
    EXPECT_EQ(w.model().lngDivPerSec, 500000);
    QTest::keyClick(w.CWKTimeRange, Qt::Key_Left);
    QTest::keyClick(w.CWKTimeRange, Qt::Key_Left);
    EXPECT_EQ(w.model().lngDivPerSec, 2000000);

    w.CWKChaLvl->setFocus();
    QTest::keyClick(w.CWKChaLvl, Qt::Key_Up);
    EXPECT_EQ(w.CWKChaLvl->value(), 2);
    EXPECT_EQ(w.model().sngChaGain, 0.1f);

    w.CWSCHaOffset->setFocus();
    QTest::keyClick(w.CWSCHaOffset, Qt::Key_Up);
    EXPECT_DOUBLE_EQ(w.CWSCHaOffset->value(), 0.1);
    EXPECT_EQ(w.model().sngChaOffset, 0.1f);
    QTest::keyClick(w.CWSCHaOffset, Qt::Key_Down);
    EXPECT_EQ(w.CWSCHaOffset->value(), 0.0);
    EXPECT_FALSE(w.CWBChaCalLed->value());

    w.CWSPan->setFocus();
    QTest::keyClick(w.CWSPan, Qt::Key_Right);
    EXPECT_DOUBLE_EQ(w.CWGraph1->axisMinimum("XAxis"), 0.5);
    QTest::keyClick(w.CWSPan, Qt::Key_PageUp);
    EXPECT_DOUBLE_EQ(w.CWGraph1->axisMinimum("XAxis"), 10.5);
    EXPECT_DOUBLE_EQ(w.CWGraph1->axisMaximum("XAxis"), 20.5);
}
