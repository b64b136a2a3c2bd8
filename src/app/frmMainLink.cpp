// The main window's side of the instrument link: POWER, the port search, the data and error
// events of the serial control.
#include "app/frmMain.h"

#include "app/ProgramServices.h"
#include "display/GraphNames.h"
#include "support/MessageBox.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"

namespace zorvik {

namespace {
const QColor kLampSearching(255, 255, 0);
const QColor kLampRunning(0, 255, 0);
const char* const kCommTitle = "Communication Error";
const char* const kCommText = "Unable to Communicate with Instrument - Check Port Connection!";
} // namespace

bool frmMain::ComPortExists(std::int16_t n) const {
    return comPortExists(*services_.ports, services_.deviceExists, n);
}

void frmMain::InitHdwe() {
    // The search runs as asynchronous waits (one second per probed port); its outcome arrives
    // in onSearchFinished while the window keeps answering.
    link_->startSearch(blnAutoPort, ComPort);
}

void frmMain::CWBPwr_ValueChanged(bool Value) {
    if (Value)
        powerOn();
    else
        powerOff();
}

void frmMain::powerOn() {
    CWBPwrLed->setOnColor(kLampSearching);
    CWBPwrLed->setValue(true);
    CWBPwr->repaint();
    CWBPwrLed->repaint();
    InitHdwe();
}

void frmMain::onSearchFinished(bool answered, int port) {
    if (!CWBPwr->value())
        return; // POWER was switched off while the search ran
    if (answered) {
        ComPort = static_cast<std::int16_t>(port);
        lngBaudRate = link_->serial().baudRate();
        setStatus(sbrBaudRate, QString("Baud: %1").arg(lngBaudRate));
        setStatus(sbrComPort, QString("Com: %1").arg(ComPort));
        model_.blnLiveData = true;
        link_->machine().blnAcquire = true;

        CWBStoreRef->setEnabled(true);
        CWBStoreRef->setValue(false);
        // While the File window is open reception waits; it starts when the window closes.
        if (!fileFormOpen_)
            link_->resetAndArm();
        CWBPwrLed->setOnColor(kLampRunning);
        CWBPwrLed->setValue(true);
        CWBPwr->repaint();
        return;
    }
    // Why each port failed, behind the message's "Show Details..." button.
    MessageBoxes::show(this, MsgIcon::Critical, kCommTitle, kCommText, QMessageBox::Ok,
                       QString::fromStdString(describePorts(link_->lastSearch())));
    setStatus(sbrBaudRate, "Baud: ");
    setStatus(sbrComPort, "Com: ");
    model_.blnLiveData = false;

    CWBStoreRef->setEnabled(false);
    CWBRef->setValue(false);
    CWBPwrLed->setValue(false);
    CWBPwr->setValue(false);
    link_->close();
}

void frmMain::powerOff() {
    CWBStoreRef->setEnabled(false);
    CWBStoreRef->setValue(false);
    CWBRef->setValue(false);
    CWBPwrLed->setValue(false);

    CWGraph1->clearAllPlots();
    model_.sngChaPlot.fill(0.0f);
    model_.sngRefPlot.fill(0.0f);

    link_->close();

    writeBareStatusLabels();
    hideIndicatorPointers();

    model_.sngChaVolts.fill(0.0f);
    model_.blnLiveData = false;
    ChartA();
}

void frmMain::onReceived(const ReceiveStep& step) {
    if (step.disablePrint)
        CWBPrint->setEnabled(false);
    if (step.pointer1) {
        CWSTrigger->setPointerValue(names::kPointer1, *step.pointer1);
        CWSTrigger->setPointerVisible(names::kPointer1, true);
    }
}

void frmMain::showFrame(const DecodedFrame& frame) {
    model_.take(frame);
    FormatDispData();
    ChartA();
    ShowTrigLevel();
}

void frmMain::CWSerial1_Error() {
    if (inErrorPath_)
        return;
    inErrorPath_ = true;
    setStatus(sbrBaudRate, "Baud: ");
    setStatus(sbrComPort, "Com: ");
    setStatus(sbrSampleRate,
              "Sample Rate: " + QString::fromStdString(model_.acquisition.strSampleRate));
    MessageBoxes::show(this, MsgIcon::Critical, kCommTitle, kCommText, QMessageBox::Ok,
                       QString::fromStdString(describePort(link_->lastFailure()) + "\n"));
    CWBPwr->setValue(false);
    link_->machine().blnAcquire = false;
    model_.blnLiveData = false;
    inErrorPath_ = false;
}

void frmMain::holdAcquisition() {
    link_->machine().blnAcquire = false;
    link_->stopReception();
}

void frmMain::resumeAcquisition() {
    link_->machine().blnAcquire = true;
    link_->resetAndArm();
}

} // namespace zorvik
