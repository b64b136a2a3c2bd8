// The Options dialog moving a running link to another port: two probes stream frames on two
// pseudo-terminals mapped to COM1 and COM2, and a stand-in main window drives the real link.
#include "OptionsRig.h"

#include "common/FrameBytes.h"
#include "common/PtyPair.h"
#include "dialogs/frmOptions.h"
#include "instrument/InstrumentLink.h"
#include "instrument/QtSerialLink.h"
#include "support/ModalRunner.h"

#include <QComboBox>
#include <QFileInfo>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::test;

namespace {

/// A probe that streams frames whose first sample is `seed`.
class StreamingProbe {
public:
    explicit StreamingProbe(int seed) {
        const auto frame = frameBytes(sampleState(), seed);
        timer_.setInterval(5);
        QObject::connect(&timer_, &QTimer::timeout, [this, frame] { pty_.write(frame); });
        timer_.start();
    }
    const std::string& path() const { return pty_.path(); }
    void unplug() {
        timer_.stop();
        pty_.closeAll();
    }

private:
    PtyPair pty_;
    QTimer timer_;
};

/// What the main window does for the dialog, on the real link.
class LinkHost : public FakeOptionsHost {
public:
    PortMap ports;
    QtSerialLink serial;
    InstrumentLink link{serial, ports, [this](int n) { return ComPortExists(n); }};
    /// First sample of every frame shown, in order.
    std::vector<int> shown;

    LinkHost() {
        for (int n = 1; n <= 8; ++n)
            ports.setDevice(n, "/nonexistent/zorvik-options-com" + std::to_string(n));
        QObject::connect(&link, &InstrumentLink::received, [this](const ReceiveStep& step) {
            if (step.show)
                shown.push_back(link.machine().bytRawData()[0]);
        });
        QObject::connect(&link, &InstrumentLink::failed, [this] { failurePath(); });
    }

    /// POWER on at `ComPort`; true once the probe answered and reception runs.
    bool powerOn() {
        QSignalSpy done(&link, &InstrumentLink::searchFinished);
        link.startSearch(false, comPort);
        if (!QTest::qWaitFor([&] { return done.count() == 1; }, 3000) || !done.at(0).at(0).toBool())
            return false;
        live = true;
        link.machine().blnAcquire = true;
        link.resetAndArm();
        return true;
    }

    bool ComPortExists(int n) const override {
        return QFileInfo::exists(QString::fromStdString(ports.devicePath(n)));
    }
    bool portIsOpen() const override { return serial.isOpen(); }
    void closePort() override {
        FakeOptionsHost::closePort();
        link.close();
    }
    void openPort() override {
        log << QStringLiteral("openPort");
        if (!link.openPort(comPort)) {
            failurePath();
            return;
        }
        if (live && link.machine().blnAcquire)
            link.resetAndArm();
    }
    void resumeReception() override {
        FakeOptionsHost::resumeReception();
        link.machine().blnAcquire = true;
        if (serial.isOpen())
            link.resetAndArm();
    }

private:
    void failurePath() {
        MessageBoxes::show(nullptr, MsgIcon::Critical, QStringLiteral("Communication Error"),
                           QStringLiteral("Unable to Communicate with Instrument - Check Port "
                                          "Connection!"));
        link.close();
        live = false;
        link.machine().blnAcquire = false;
    }
};

struct LinkRig {
    StreamingProbe first{1};
    StreamingProbe second{40};
    QWidget mainWindow;
    LinkHost host;
    std::vector<MessageRecord> messages;

    LinkRig() {
        host.ports.setDevice(1, first.path());
        host.ports.setDevice(2, second.path());
        setModalRunner([](QDialog& dialog) {
            dialog.show();
            return 0;
        });
        MessageBoxes::setInterceptor([this](const MessageRecord& record) {
            messages.push_back(record);
            return QMessageBox::Ok;
        });
    }
    ~LinkRig() {
        host.link.close();
        setModalRunner({});
        MessageBoxes::setInterceptor({});
    }

    /// Waits for `count` frames shown after the call.
    bool framesShown(std::size_t count) {
        host.shown.clear();
        return QTest::qWaitFor([&] { return host.shown.size() >= count; }, 3000);
    }
};

} // namespace

TEST(frmOptionsLink, PortChangeWhileRunningContinuesTheLiveTraceFromTheNewProbe) {
    LinkRig rig;
    ASSERT_TRUE(rig.host.powerOn());
    ASSERT_TRUE(rig.framesShown(3));
    EXPECT_EQ(rig.host.shown.front(), 1);

    frmOptions* dialog = showOptions(&rig.mainWindow, rig.host);
    auto* port = control<QComboBox>(*dialog, "cboComPort");
    ASSERT_EQ(port->count(), 2);
    EXPECT_EQ(port->currentText(), "COM 1");
    port->setCurrentIndex(1);
    control<QPushButton>(*dialog, "cmdOK")->click();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(rig.host.log, QStringList({"closePort", "ComPort=2", "blnAutoPort=false", "openPort",
                                         "refreshMainWindow"}));

    ASSERT_TRUE(rig.framesShown(5));
    EXPECT_EQ(rig.host.shown, std::vector<int>(rig.host.shown.size(), 40));
    EXPECT_EQ(rig.host.serial.device().toStdString(), rig.second.path());
    EXPECT_TRUE(rig.messages.empty());
}

TEST(frmOptionsLink, PortThatVanishedBeforeApplyTakesTheFailurePathAndStaysClosed) {
    LinkRig rig;
    ASSERT_TRUE(rig.host.powerOn());
    ASSERT_TRUE(rig.framesShown(1));

    frmOptions* dialog = showOptions(&rig.mainWindow, rig.host);
    control<QComboBox>(*dialog, "cboComPort")->setCurrentIndex(1);
    rig.second.unplug();
    control<QPushButton>(*dialog, "cmdApply")->click();
    ASSERT_EQ(rig.messages.size(), 1u);
    EXPECT_EQ(rig.messages[0].title, "Communication Error");
    EXPECT_EQ(rig.messages[0].text,
              "Unable to Communicate with Instrument - Check Port Connection!");
    EXPECT_FALSE(rig.host.serial.isOpen());
    EXPECT_TRUE(dialog->blnPortChanged());

    // Closing the dialog resumes on a closed port: nothing is armed, nothing more goes wrong.
    dialog->cmdCancel_Click();
    EXPECT_EQ(rig.host.log.last(), "resumeReception");
    EXPECT_FALSE(rig.host.serial.isOpen());
    EXPECT_FALSE(rig.host.serial.readPending());
    EXPECT_EQ(rig.messages.size(), 1u);
}
