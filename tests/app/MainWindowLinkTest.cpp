// POWER, the port search and the receive cycle as the main window shows them.
#include "app/MainWindowFixture.h"
#include "common/EventLoop.h"
#include "common/FrameBytes.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

#include <QFile>
#include <QTest>

using namespace zorvik;
using zorvik::test::frameBytes;
using zorvik::test::MainWindowFixture;
using zorvik::test::sampleState;

namespace {
const char* const kText = "Unable to Communicate with Instrument - Check Port Connection!";

class MainWindowLink : public MainWindowFixture {
protected:
    /// POWER on with the instrument answering on COM `n` (the only existing port).
    frmMain& running(int n = 1) {
        fake.openable.insert(device(n));
        frmMain& w = start({n});
        w.panel().CWBPwr->setValue(true);
        EXPECT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 1; }, 1000));
        fake.feed(QByteArray(1, '\x7D'));
        EXPECT_TRUE(QTest::qWaitFor([&] { return w.model().blnLiveData; }, 1000));
        EXPECT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 2; }, 1000));
        return w;
    }
    void feedFrame(int seed = 1, HardwareState s = sampleState()) {
        fake.feed(frameBytes(s, seed));
        test::runPendingEvents();
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return fake.pendingCount() == 2 && fake.buffered() == 0; }, 1000));
    }
};
} // namespace

TEST_F(MainWindowLink, PowerWithNoPortsShowsTheMessageAndSwitchesBackOff) {
    frmMain& w = start({});
    w.panel().CWBPwr->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.size() == 1; }, 2000));
    EXPECT_EQ(messages[0].icon, MsgIcon::Critical);
    EXPECT_EQ(messages[0].title, "Communication Error");
    EXPECT_EQ(messages[0].text, kText);
    EXPECT_EQ(messages[0].buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    EXPECT_FALSE(w.panel().CWBPwr->value());
    EXPECT_FALSE(w.panel().CWBPwrLed->value());
    EXPECT_FALSE(w.panel().CWBStoreRef->isEnabled());
    EXPECT_FALSE(w.model().blnLiveData);
    EXPECT_EQ(w.panel().sbrBaudRate->text(), "Baud: ");
    EXPECT_EQ(w.panel().sbrComPort->text(), "Com: ");
    // Behind "Show Details...": what happened on each of COM1 to COM8.
    EXPECT_EQ(messages[0].details, "COM1 (/fake/com1): not present\n"
                                   "COM2 (/fake/com2): not present\n"
                                   "COM3 (/fake/com3): not present\n"
                                   "COM4 (/fake/com4): not present\n"
                                   "COM5 (/fake/com5): not present\n"
                                   "COM6 (/fake/com6): not present\n"
                                   "COM7 (/fake/com7): not present\n"
                                   "COM8 (/fake/com8): not present\n");
}

// The message's details say, for each port tried, what happened on it.
TEST_F(MainWindowLink, TheMessagesDetailsSayWhatHappenedOnEachPort) {
    fake.openable.insert(device(3));
    PortReport denied;
    denied.outcome = PortOutcome::PermissionDenied;
    denied.detail = "dialout";
    fake.failures[device(1)] = denied;
    PortReport busy;
    busy.outcome = PortOutcome::Busy;
    busy.detail = "minicom (process 4711)";
    fake.failures[device(2)] = busy;
    PortReport notSerial;
    notSerial.outcome = PortOutcome::NotASerialDevice;
    fake.failures[device(4)] = notSerial;
    frmMain& w = start({1, 2, 3, 4});
    w.panel().CWBPwr->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 1; }, 2000));
    fake.timeOut(); // COM3 opens but does not answer
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.size() == 1; }, 4000));
    EXPECT_EQ(messages[0].title, "Communication Error");
    EXPECT_EQ(messages[0].text, kText);
    EXPECT_EQ(messages[0].buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    EXPECT_EQ(messages[0].details,
              "COM1 (/fake/com1): permission denied. Only members of the group dialout may open "
              "it; add yourself with sudo usermod -aG dialout $USER, then log out and in again\n"
              "COM2 (/fake/com2): busy: held by minicom (process 4711)\n"
              "COM3 (/fake/com3): no answer within 1 second (is the probe connected and "
              "switched on?)\n"
              "COM4 (/fake/com4): not a serial device\n"
              "COM5 (/fake/com5): not present\n"
              "COM6 (/fake/com6): not present\n"
              "COM7 (/fake/com7): not present\n"
              "COM8 (/fake/com8): not present\n");
}

// A port that fails while frames come in: the details name it and what happened.
TEST_F(MainWindowLink, APortErrorWhileRunningSaysWhatFailedInTheDetails) {
    running();
    fake.fail();
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.size() == 1; }, 2000));
    EXPECT_EQ(messages[0].text, kText);
    EXPECT_EQ(messages[0].details, "COM1 (/fake/com1): the port failed: device gone\n");
}

TEST_F(MainWindowLink, LampIsYellowWhileSearchingThenOutWhenNoInstrumentAnswers) {
    fake.openable.insert(device(1));
    frmMain& w = start({1});
    w.panel().CWBPwr->setValue(true);
    EXPECT_TRUE(w.panel().CWBPwrLed->value());
    EXPECT_EQ(w.panel().CWBPwrLed->onColor(), QColor(255, 255, 0));
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 1; }, 1000));
    EXPECT_TRUE(fake.pendingTimed());
    EXPECT_TRUE(messages.empty());
    fake.timeOut();
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.size() == 1; }, 2000));
    EXPECT_EQ(messages[0].text, kText);
    EXPECT_FALSE(w.panel().CWBPwrLed->value());
    EXPECT_FALSE(w.panel().CWBPwr->value());
    EXPECT_FALSE(fake.isOpen());
}

TEST_F(MainWindowLink, PowerFindsTheInstrumentAndTheStatusBarShowsTheLink) {
    frmMain& w = running(1);
    EXPECT_EQ(w.panel().CWBPwrLed->onColor(), QColor(0, 255, 0));
    EXPECT_TRUE(w.panel().CWBPwrLed->value());
    EXPECT_EQ(w.panel().sbrBaudRate->text(), "Baud: 19200");
    EXPECT_EQ(w.panel().sbrComPort->text(), "Com: 1");
    EXPECT_TRUE(w.panel().CWBStoreRef->isEnabled());
    EXPECT_FALSE(w.panel().CWBStoreRef->value());
    EXPECT_TRUE(w.link().machine().blnAcquire);
    EXPECT_TRUE(fake.calls.contains("read 2"));
    feedFrame(3);
    EXPECT_EQ(w.model().state, sampleState());
    EXPECT_EQ(w.panel().sbrSampleRate->text(), "Sample Rate: 20Ks/s");
    EXPECT_TRUE(messages.empty());
}

TEST_F(MainWindowLink, SearchProbesPortOneThenInstrumentOnThreeWins) {
    fake.openable.insert(device(1));
    fake.openable.insert(device(3));
    frmMain& w = start({1, 3});
    w.panel().CWBPwr->setValue(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.pendingCount() == 1; }, 1000));
    EXPECT_EQ(fake.device(), device(1));
    fake.timeOut();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return fake.device() == device(3) && fake.pendingCount() == 1; }, 1000));
    fake.feed(QByteArray(1, '\x24'));
    ASSERT_TRUE(QTest::qWaitFor([&] { return w.model().blnLiveData; }, 1000));
    EXPECT_EQ(w.ComPort, 3);
    EXPECT_EQ(w.panel().sbrComPort->text(), "Com: 3");
}

TEST_F(MainWindowLink, WaitingMarkersMoveTheTriggerIndicatorToWaiting) {
    frmMain& w = running();
    fake.feed(QByteArray("\x7D\x7D", 2));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return w.panel().CWSTrigger->pointerValue("Pointer-1") == 300; }, 1000));
    EXPECT_EQ(w.panel().CWSTrigger->pointerStateText("Pointer-1"), "WAIT");
    EXPECT_TRUE(fake.calls.contains("reset"));
    feedFrame();
    EXPECT_EQ(w.panel().CWSTrigger->pointerValue("Pointer-1"), 0);
    EXPECT_EQ(w.panel().CWSTrigger->pointerStateText("Pointer-1"), "TRIG");
}

TEST_F(MainWindowLink, FramesShowTheIndicatorsAgain) {
    frmMain& w = running();
    EXPECT_FALSE(w.panel().CWSRange->pointerVisible());
    feedFrame();
    EXPECT_TRUE(w.panel().CWSRange->pointerVisible());
    EXPECT_TRUE(w.panel().CWSCoupling->pointerVisible());
    EXPECT_TRUE(w.panel().CWSTrigger->pointerVisible());
    EXPECT_TRUE(w.panel().CWSTrigInd->pointerVisible("TrigLvl"));
    EXPECT_EQ(w.panel().CWSRange->value(), 2);
    EXPECT_EQ(w.panel().CWSCoupling->value(), 3);
    EXPECT_EQ(w.panel().CWSTrigger->value(), 2);
}

TEST_F(MainWindowLink, StallMidFrameTakesTheErrorPath) {
    frmMain& w = running();
    feedFrame();
    auto half = frameBytes(sampleState(), 2);
    half.resize(60);
    fake.feed(half);
    ASSERT_TRUE(QTest::qWaitFor([&] { return fake.pendingTimed(); }, 1000));
    fake.timeOut();
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.size() == 1; }, 1000));
    EXPECT_EQ(messages[0].title, "Communication Error");
    EXPECT_EQ(messages[0].text, kText);
    // While the message shows, the rate text is kept; POWER off then writes the bare labels.
    EXPECT_EQ(messageStatus[0], "Sample Rate: 20Ks/s");
    EXPECT_FALSE(w.panel().CWBPwr->value());
    EXPECT_FALSE(w.model().blnLiveData);
    EXPECT_FALSE(w.link().machine().blnAcquire);
    EXPECT_FALSE(fake.isOpen());
    EXPECT_EQ(w.panel().sbrBaudRate->text(), "Baud: ");
    EXPECT_EQ(w.panel().sbrComPort->text(), "Com: ");
    EXPECT_EQ(w.panel().sbrSampleRate->text(), "Sample Rate: ");
}

TEST_F(MainWindowLink, VanishedPortTakesTheErrorPath) {
    frmMain& w = running();
    fake.fail();
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.size() == 1; }, 1000));
    EXPECT_EQ(messages[0].text, kText);
    EXPECT_FALSE(w.panel().CWBPwr->value());
    EXPECT_FALSE(w.panel().CWBPwrLed->value());
}

TEST_F(MainWindowLink, PowerOffClearsTheDisplayAndClosesThePort) {
    frmMain& w = running();
    feedFrame();
    EXPECT_FALSE(w.panel().CWGraph1->plotData("CHa").x.isEmpty());
    w.panel().CWBPwr->setValue(false);
    EXPECT_FALSE(fake.isOpen());
    EXPECT_TRUE(w.panel().CWGraph1->plotData("CHa").x.isEmpty());
    EXPECT_EQ(w.panel().sbrSampleRate->text(), "Sample Rate: ");
    EXPECT_FALSE(w.panel().CWSRange->pointerVisible());
    EXPECT_FALSE(w.model().blnLiveData);
    for (float v : w.model().sngChaVolts)
        EXPECT_EQ(v, 0.0f);
    // The record keeps the last frame's values.
    EXPECT_EQ(w.model().state, sampleState());
}

TEST_F(MainWindowLink, SwitchingPowerOffDuringTheSearchEndsItQuietly) {
    fake.openable.insert(device(1));
    frmMain& w = start({1});
    w.panel().CWBPwr->setValue(true);
    ASSERT_TRUE(w.searching());
    w.panel().CWBPwr->setValue(false);
    EXPECT_FALSE(w.searching());
    fake.timeOut();
    test::runPendingEvents();
    EXPECT_TRUE(messages.empty());
    EXPECT_FALSE(fake.isOpen());
}

TEST_F(MainWindowLink, ClosingWhileRunningClosesThePortBeforeTheSettingsAreWritten) {
    running();
    bool settingsExistedAtClose = true;
    fake.onClose = [&] { settingsExistedAtClose = QFile::exists(settingsPath()); };
    window->close();
    EXPECT_FALSE(settingsExistedAtClose);
    EXPECT_TRUE(QFile::exists(settingsPath()));
}
