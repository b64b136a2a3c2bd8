// The front-panel controls of the main window as a user works them: CALX, the offset slide,
// INVERT, and the FILE, MENU, HELP and PRINT buttons with the moment each one acts.
#include "app/LiveWindowFixture.h"
#include "common/EventLoop.h"
#include "dialogs/frmOptions.h"
#include "printing/PrintingServices.h"
#include "storage/frmFile.h"
#include "support/HelpWindow.h"
#include "support/ModalRunner.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/Slide.h"

#include <QApplication>
#include <QDialog>
#include <QFileInfo>

using namespace zorvik;
using zorvik::test::LiveWindowFixture;
using zorvik::test::rampSamples;
using zorvik::test::stateWith;

namespace {

class MainWindowPanel : public LiveWindowFixture {
protected:
    void TearDown() override {
        setModalRunner({});
        LiveWindowFixture::TearDown();
    }

    /// The centre of a button, where a user presses it.
    static QPoint middle(QWidget* w) { return w->rect().center(); }

    /// The help window that is open, if any.
    static HelpWindow* openHelpWindow() {
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (auto* h = qobject_cast<HelpWindow*>(w); h && h->isVisible())
                return h;
        }
        return nullptr;
    }
};

} // namespace

TEST_F(MainWindowPanel, CalxWithTheOffsetAlreadyZeroStillReplotsAndLeavesTheLedDark) {
    frmMain& w = running();
    feed(stateWith(0x04, 6), rampSamples());
    ASSERT_EQ(w.panel().CWSCHaOffset->value(), 0.0);
    const ScopeGraph::PlotData shown = w.panel().CWGraph1->plotData("CHa");
    w.panel().CWGraph1->clearData("CHa"); // only a replot brings the trace back
    QTest::mouseClick(w.panel().CWBCHaCal, Qt::LeftButton, {}, middle(w.panel().CWBCHaCal));
    const ScopeGraph::PlotData replotted = w.panel().CWGraph1->plotData("CHa");
    EXPECT_EQ(replotted.x, shown.x);
    EXPECT_EQ(replotted.y, shown.y);
    EXPECT_FALSE(w.panel().CWBChaCalLed->value());
    EXPECT_EQ(w.panel().CWSCHaOffset->value(), 0.0);
    EXPECT_FALSE(w.panel().CWBCHaCal->value()); // a momentary key: up again after the click
}

TEST_F(MainWindowPanel, CalxBringsTheOffsetBackToZeroAndPutsTheLedOut) {
    frmMain& w = running();
    feed(stateWith(0x04, 6), rampSamples());
    w.panel().CWSCHaOffset->setValue(2.0);
    EXPECT_TRUE(w.panel().CWBChaCalLed->value());
    EXPECT_EQ(w.model().sngChaOffset, 2.0f);
    QTest::mouseClick(w.panel().CWBCHaCal, Qt::LeftButton, {}, middle(w.panel().CWBCHaCal));
    EXPECT_EQ(w.panel().CWSCHaOffset->value(), 0.0);
    EXPECT_EQ(w.model().sngChaOffset, 0.0f);
    EXPECT_FALSE(w.panel().CWBChaCalLed->value());
    EXPECT_DOUBLE_EQ(w.panel().CWSTrigInd->pointerValue("CHa_Zero"), 0.0);
    expectPlot(*w.panel().CWGraph1, "CHa", static_cast<double>(5e-5f) * 1000000,
               expectedY(w.model().sngChaVolts));
}

TEST_F(MainWindowPanel, MovingTheOffsetDoesNotChangeTheVoltageReadout) {
    frmMain& w = running();
    w.panel().CWKChaLvl->setValue(5);
    feed(stateWith(0x04, 6, 16), rampSamples()); // trigger level 0.5 V
    w.panel().CWBHCursors->setValue(true);
    const QString volts = w.panel().lblCVoltage->text();
    ASSERT_EQ(volts, "1.00 V"); // the pair stands one division apart at 1 V/div
    const ScopeGraph::PlotData before = w.panel().CWGraph1->plotData("CHa");
    const double cursor3 = w.panel().CWGraph1->cursorY("Cursor3");
    const double cursor4 = w.panel().CWGraph1->cursorY("Cursor4");

    w.panel().CWSCHaOffset->setValue(-1.2);
    EXPECT_EQ(w.panel().lblCVoltage->text(), volts);
    EXPECT_EQ(w.panel().CWGraph1->cursorY("Cursor3"), cursor3);
    EXPECT_EQ(w.panel().CWGraph1->cursorY("Cursor4"), cursor4);
    // Only the trace and the two pointers move.
    const ScopeGraph::PlotData after = w.panel().CWGraph1->plotData("CHa");
    ASSERT_EQ(after.y.size(), 128);
    for (int i = 0; i < 128; ++i)
        EXPECT_NEAR(after.y[i], before.y[i] - 1.2, 1e-6) << i;
    EXPECT_NEAR(w.panel().CWSTrigInd->pointerValue("TrigLvl"), 0.5 - 1.2, 1e-6);
    EXPECT_NEAR(w.panel().CWSTrigInd->pointerValue("CHa_Zero"), -1.2, 1e-12);
    EXPECT_TRUE(w.panel().CWBChaCalLed->value());
}

TEST_F(MainWindowPanel, InvertingFlipsTheTraceAndTrigLvlButNotChaZero) {
    frmMain& w = running();
    w.panel().CWKChaLvl->setValue(5);
    w.panel().CWSCHaOffset->setValue(0.8);
    feed(stateWith(0x04, 6, 4), rampSamples()); // trigger level 2.5 V
    EXPECT_NEAR(w.panel().CWSTrigInd->pointerValue("TrigLvl"), 2.5 + 0.8, 1e-6);
    QTest::mouseClick(w.panel().CWBChaInv, Qt::LeftButton, {}, middle(w.panel().CWBChaInv));
    EXPECT_TRUE(w.panel().CWBChaInv->value());
    EXPECT_TRUE(w.panel().CWBChaInvLed->value());
    EXPECT_NEAR(w.panel().CWSTrigInd->pointerValue("TrigLvl"), -2.5 + 0.8, 1e-6);
    EXPECT_NEAR(w.panel().CWSTrigInd->pointerValue("CHa_Zero"), 0.8, 1e-12);
    expectPlot(*w.panel().CWGraph1, "CHa", static_cast<double>(5e-5f) * 1000000,
               expectedY(w.model().sngChaVolts));
    QTest::mouseClick(w.panel().CWBChaInv, Qt::LeftButton, {}, middle(w.panel().CWBChaInv));
    EXPECT_FALSE(w.panel().CWBChaInvLed->value());
    EXPECT_NEAR(w.panel().CWSTrigInd->pointerValue("TrigLvl"), 2.5 + 0.8, 1e-6);
}

TEST_F(MainWindowPanel, FileWithPowerOffOpensTheFileFormWithoutTouchingTheSerialLink) {
    frmMain& w = start();
    int opened = 0;
    setModalRunner([&](QDialog& d) {
        if (qobject_cast<frmFile*>(&d))
            ++opened;
        return 0;
    });
    QTest::mouseClick(w.panel().CWBFile, Qt::LeftButton, {}, middle(w.panel().CWBFile));
    ASSERT_TRUE(QTest::qWaitFor([&] { return opened == 1; }, 2000));
    test::runPendingEvents(); // anything the button might still do afterwards
    EXPECT_EQ(opened, 1);
    EXPECT_TRUE(fake.calls.isEmpty()) << fake.calls.join(", ").toStdString();
    EXPECT_FALSE(fake.isOpen());
    EXPECT_FALSE(w.panel().CWBFile->value());
}

TEST_F(MainWindowPanel, FileWhileRunningHoldsReceptionAndResumesWhenTheFormCloses) {
    frmMain& w = running();
    feed(stateWith(0x04, 6), rampSamples());
    int pendingWhileOpen = -1;
    setModalRunner([&](QDialog& d) {
        if (qobject_cast<frmFile*>(&d))
            pendingWhileOpen = fake.pendingCount();
        return 0;
    });
    fake.calls.clear();
    QTest::mouseClick(w.panel().CWBFile, Qt::LeftButton, {}, middle(w.panel().CWBFile));
    ASSERT_TRUE(QTest::qWaitFor([&] { return pendingWhileOpen >= 0; }, 2000));
    EXPECT_EQ(pendingWhileOpen, 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 2; }, 2000));
    EXPECT_TRUE(fake.calls.contains("reset"));
    feed(stateWith(0x04, 6), rampSamples());
}

// POWER starts the port search; FILE pressed meanwhile opens the File window. The probe is
// found while the window is open: reception waits until the window closes, as it does when
// FILE is pressed with the link already live.
TEST_F(MainWindowPanel, FileDuringThePortSearchHoldsReceptionUntilTheFileWindowCloses) {
    fake.openable.insert(device(1));
    frmMain& w = start({1});
    QObject::connect(&w.link(), &InstrumentLink::received, &w, [this](const ReceiveStep& s) {
        if (s.event == ReceiveEvent::Frame)
            ++framesShown;
    });
    w.panel().CWBPwr->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 1; }, 2000));
    bool ran = false;
    int pendingAfterTheSearch = -1;
    setModalRunner([&](QDialog& d) {
        if (!qobject_cast<frmFile*>(&d))
            return 0;
        ran = true;
        fake.feed(QByteArray(1, '\x7D')); // the probe answers: the search ends
        if (!QTest::qWaitFor([&] { return w.model().blnLiveData; }, 2000))
            return 0;
        // Frames arrive while the window is open; nothing reads them.
        fake.feed(zorvik::test::frameWithSamples(stateWith(0x04, 6), rampSamples()));
        pendingAfterTheSearch = fake.pendingCount();
        return 0;
    });
    QTest::mouseClick(w.panel().CWBFile, Qt::LeftButton, {}, middle(w.panel().CWBFile));
    ASSERT_TRUE(QTest::qWaitFor([&] { return ran; }, 2000));
    EXPECT_EQ(pendingAfterTheSearch, 0);
    EXPECT_EQ(framesShown, 0);
    // The window closed: the input is reset and the two-byte read armed.
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 2; }, 2000));
    EXPECT_EQ(fake.calls.mid(fake.calls.lastIndexOf("reset")), QStringList({"reset", "read 2"}));
    EXPECT_EQ(w.panel().CWBPwrLed->onColor(), QColor(0, 255, 0));
    feed(stateWith(0x04, 6), rampSamples());
    EXPECT_EQ(framesShown, 1);
}

TEST_F(MainWindowPanel, FileAndMenuActWhenPressed) {
    frmMain& w = start();
    int files = 0;
    int menus = 0;
    setModalRunner([&](QDialog& d) {
        if (qobject_cast<frmFile*>(&d))
            ++files;
        if (qobject_cast<frmOptions*>(&d))
            ++menus;
        return 0;
    });

    QTest::mousePress(w.panel().CWBFile, Qt::LeftButton, {}, middle(w.panel().CWBFile));
    ASSERT_TRUE(QTest::qWaitFor([&] { return files == 1; }, 2000));
    QTest::mouseRelease(w.panel().CWBFile, Qt::LeftButton, {}, middle(w.panel().CWBFile));
    test::runPendingEvents();
    EXPECT_EQ(files, 1);

    QTest::mousePress(w.panel().CWBMenu, Qt::LeftButton, {}, middle(w.panel().CWBMenu));
    ASSERT_TRUE(QTest::qWaitFor([&] { return menus == 1; }, 2000));
    QTest::mouseRelease(w.panel().CWBMenu, Qt::LeftButton, {}, middle(w.panel().CWBMenu));
    test::runPendingEvents();
    EXPECT_EQ(menus, 1);
    EXPECT_EQ(files, 1);
}

TEST_F(MainWindowPanel, HelpActsWhenReleased) {
    frmMain& w = start();
    QTest::mousePress(w.panel().CWBHelp, Qt::LeftButton, {}, middle(w.panel().CWBHelp));
    EXPECT_TRUE(w.panel().CWBHelp->value());
    test::runPendingEvents();
    EXPECT_EQ(openHelpWindow(), nullptr);
    QTest::mouseRelease(w.panel().CWBHelp, Qt::LeftButton, {}, middle(w.panel().CWBHelp));
    ASSERT_TRUE(QTest::qWaitFor([] { return openHelpWindow() != nullptr; }, 2000));
    EXPECT_EQ(openHelpWindow()->home(),
              QUrl::fromLocalFile(QFileInfo(w.helpFile()).absoluteFilePath()));
    openHelpWindow()->close();
}

TEST_F(MainWindowPanel, PrintActsWhenReleased) {
    frmMain& w = running();
    feed(stateWith(0x04, 6), rampSamples());
    w.panel().CWBStoreRef->setValue(true); // a held trace can be printed
    ASSERT_TRUE(w.panel().CWBPrint->isEnabled());
    QStringList dialogs;
    setModalRunner([&](QDialog& d) {
        dialogs << d.objectName();
        return 0;
    });
    QTest::mousePress(w.panel().CWBPrint, Qt::LeftButton, {}, middle(w.panel().CWBPrint));
    test::runPendingEvents();
    EXPECT_TRUE(dialogs.isEmpty());
    QTest::mouseRelease(w.panel().CWBPrint, Qt::LeftButton, {}, middle(w.panel().CWBPrint));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !dialogs.isEmpty(); }, 2000));
    EXPECT_EQ(dialogs, QStringList({"frmPreview"}));
    EXPECT_FALSE(w.printing().pictureHolder().isEmpty());
}
