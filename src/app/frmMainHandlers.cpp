// Handlers of the front-panel controls, the reference buttons and the graph's cursors.
#include "app/frmMain.h"

#include "display/GraphNames.h"
#include "instrument/ReceiveMachine.h"
#include "printing/PrintingServices.h"
#include "support/OpenForms.h"
#include "support/cHTMLHelp.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <QApplication>
#include <QTimer>

namespace zorvik {

/// The release of a button that opened a modal window went to that window; the button is
/// released here, without running its handler again.
void frmMain::releaseAfterModal(LitButton* button) {
    button->setDown(false);
    button->setValueSilently(false);
}

void frmMain::CWKTimeRange_ValueChanged(int) {
    SetTimeScale();
    ChartA();
    DisplayCursorData();
}

void frmMain::CWKChaLvl_ValueChanged(int) {
    SetChaScale();
    ChartA();
    ShowTrigLevel();
}

void frmMain::CWSCHaOffset_ValueChanged(double Value) {
    model_.sngChaOffset = static_cast<float>(Value);
    CWBChaCalLed->setValue(model_.sngChaOffset != 0.0f);
    ChartA();
    ShowTrigLevel();
}

void frmMain::CWBCHaCal_ValueChanged(bool) {
    CWSCHaOffset->setValue(0.0);
    SetChaScale();
    ChartA();
}

void frmMain::CWBChaInv_ValueChanged(bool Value) {
    CWBChaInvLed->setValue(Value);
    ChartA();
    ShowTrigLevel();
}

void frmMain::CWSPan_ValueChanged(double Value) {
    model_.varGraphOffset = Value;
    SetXAxis();
}

void frmMain::CWBVCursors_ValueChanged(bool Value) {
    if (Value) {
        // One division apart, one and two divisions from the window's left edge.
        const double m = CWGraph1->axisMinimum(names::kXAxis);
        CWGraph1->setCursorX(names::kCursor1, m + 1);
        CWGraph1->setCursorX(names::kCursor2, m + 2);
    }
    CWGraph1->setCursorVisible(names::kCursor1, Value);
    CWGraph1->setCursorVisible(names::kCursor2, Value);
    DisplayCursorData();
}

void frmMain::CWBHCursors_ValueChanged(bool Value) {
    if (Value) {
        const double m = CWGraph1->axisMinimum(names::kYAxis);
        CWGraph1->setCursorY(names::kCursor3, m + 1);
        CWGraph1->setCursorY(names::kCursor4, m + 2);
    }
    CWGraph1->setCursorVisible(names::kCursor3, Value);
    CWGraph1->setCursorVisible(names::kCursor4, Value);
    DisplayCursorData();
}

void frmMain::CWGraph1_CursorChange(const QString&) {
    DisplayCursorData();
}

void frmMain::CWBStoreRef_ValueChanged(bool Value) {
    if (Value) {
        CWBStoreRef->repaint();
        model_.sngRefVoltsPerCount = model_.acquisition.sngVoltsPerCount;
        model_.sngRefSampleInterval = model_.acquisition.sngSampleInterval;
        model_.sngRefVolts = model_.sngChaVolts;
        if (!CWBRef->value())
            CWBRef->setValue(true);
        if (model_.blnLiveData && CWBPwr->value())
            holdAcquisition();
        CWGraph1->setPlotVisible(names::kPlotCHa, false);
        CWSTrigger->setPointerValue(names::kPointer1, kPointerTriggered);
        CWSTrigger->setPointerVisible(names::kPointer1, true);
        CWBPrint->setEnabled(true);
        model_.blnRefLoaded = false;
        ChartA();
        return;
    }
    if (model_.blnLiveData && CWBPwr->value())
        resumeAcquisition();
    CWBPrint->setEnabled(false);
    CWGraph1->setPlotVisible(names::kPlotCHa, true);
    ChartA();
}

void frmMain::CWBRef_ValueChanged(bool Value) {
    if (Value) {
        ChartA();
        CWGraph1->setPlotVisible(names::kPlotRef, true);
        if (CWBStoreRef->value() || model_.blnRefLoaded)
            CWBPrint->setEnabled(true);
        return;
    }
    CWGraph1->setPlotVisible(names::kPlotRef, false);
    CWBPrint->setEnabled(false);
}

void frmMain::CWBFile_ValueChanged(bool Value) {
    if (!Value)
        return;
    // The file window opens from the event loop, after the press has been handled, so the
    // button's release is not lost to the modal window.
    QTimer::singleShot(0, this, [this] {
        const bool wasLive = CWBPwr->value() && model_.blnLiveData;
        if (wasLive)
            link_->stopReception();
        // A port search that finds the probe while the window is open leaves reception to
        // the window's closing, as if the link had been live when FILE was pressed.
        fileFormOpen_ = true;
        showFileForm();
        fileFormOpen_ = false;
        if (CWBPwr->value() && model_.blnLiveData && !CWBStoreRef->value())
            link_->resetAndArm();
        releaseAfterModal(CWBFile);
    });
}

void frmMain::CWBHelp_ValueChanged(bool Value) {
    if (Value)
        return;
    if (!help_)
        help_ = std::make_unique<cHTMLHelp>();
    help_->DisplayHelp(this, helpFile());
}

void frmMain::CWBPrint_ValueChanged(bool Value) {
    if (Value)
        return;
    if (formOpen(QStringLiteral("frmPreview")))
        return;
    printing_->printButtonReleased(this);
}

} // namespace zorvik
