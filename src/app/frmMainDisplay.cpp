// The main window's display routines: decode a frame, plot the traces, place the pointers,
// the scales and the cursor readouts. The arithmetic lives in the display core.
#include "app/frmMain.h"

#include "display/AcquisitionFeed.h"
#include "display/ChartA.h"
#include "display/CursorReadouts.h"
#include "display/GraphFurniture.h"
#include "display/GraphNames.h"
#include "display/ScaleTables.h"
#include "widgets/IndicatorSlide.h"
#include "widgets/Knob.h"
#include "widgets/LitButton.h"
#include "widgets/ScopeGraph.h"
#include "widgets/Slide.h"

#include <cmath>

namespace zorvik {

void frmMain::FormatDispData() {
    const FormatDispDataResult r = model_.decode();
    if (r.CWSCoupling)
        CWSCoupling->setValue(*r.CWSCoupling);
    if (r.CWSRange)
        CWSRange->setValue(*r.CWSRange);
    if (r.CWSTrigger)
        CWSTrigger->setValue(*r.CWSTrigger);
    setStatus(sbrSampleRate, QString::fromStdString(r.sbrSampleRate));
    // The indicators show again while frames arrive (power-off and start-up hide them).
    CWSTrigger->setPointerVisible(true);
    CWSCoupling->setPointerVisible(true);
    CWSRange->setPointerVisible(true);
    CWSTrigInd->setPointerVisible(names::kTrigLvl, true);
}

void frmMain::ChartA() {
    ChartInputs in;
    in.blnLiveData = model_.blnLiveData;
    in.blnRefLoaded = model_.blnRefLoaded;
    in.CWBRef = CWBRef->value();
    in.CWBChaInv = CWBChaInv->value();
    in.sngChaGain = model_.sngChaGain;
    in.sngChaOffset = model_.sngChaOffset;
    in.lngDivPerSec = model_.lngDivPerSec;
    in.sngSampleInterval = model_.acquisition.sngSampleInterval;
    in.sngRefSampleInterval = model_.sngRefSampleInterval;
    const ChartAResult r = zorvik::ChartA(in, model_.sngChaVolts, model_.sngRefVolts);
    auto apply = [this](const char* plot, const PlotUpdate& u, TraceArray& store) {
        if (u.action == PlotAction::Clear) {
            CWGraph1->clearData(plot);
        } else if (u.action == PlotAction::Plot) {
            store = u.y;
            CWGraph1->plotY(plot, store.data(), static_cast<int>(store.size()), u.firstX, u.xStep);
        }
    };
    apply(names::kPlotCHa, r.CHa, model_.sngChaPlot);
    apply(names::kPlotRef, r.Ref, model_.sngRefPlot);
    CWGraph1->redraw();
    services_.feed->announce(model_);
}

void frmMain::ShowTrigLevel() {
    const TrigIndicatorPointers p =
        zorvik::ShowTrigLevel(model_.acquisition.sngTrigLevel, model_.sngChaGain,
                              model_.sngChaOffset, CWBChaInv->value(), CWSCHaOffset->value());
    CWSTrigInd->setPointerValue(names::kTrigLvl, p.TrigLvl);
    CWSTrigInd->setPointerValue(names::kChaZero, p.CHa_Zero);
}

void frmMain::SetXAxis() {
    CWGraph1->setAxisMinimum(names::kXAxis, model_.varGraphOffset);
    CWGraph1->setAxisMaximum(names::kXAxis, xAxisMaximum(CWGraph1->axisMinimum(names::kXAxis)));
    CWGraph1->redraw();
}

void frmMain::SetChaScale() {
    if (const auto gain = chaGainForPosition(CWKChaLvl->value()))
        model_.sngChaGain = *gain;
    model_.sngChaOffset = static_cast<float>(CWSCHaOffset->value());
    DisplayCursorData();
}

void frmMain::SetTimeScale() {
    if (const auto scale = timeScaleForPosition(CWKTimeRange->value())) {
        model_.lngDivPerSec = scale->lngDivPerSec;
        model_.intTimeUnit = scale->intTimeUnit;
    }
}

void frmMain::DisplayCursorData() {
    auto position = [this](const char* cursor, bool x) -> std::optional<double> {
        const double v = x ? CWGraph1->cursorX(cursor) : CWGraph1->cursorY(cursor);
        if (std::isnan(v))
            return std::nullopt;
        return v;
    };
    CursorInputs in;
    in.CWBHCursors = CWBHCursors->value();
    in.CWBVCursors = CWBVCursors->value();
    in.Cursor1X = position(names::kCursor1, true);
    in.Cursor2X = position(names::kCursor2, true);
    in.Cursor3Y = position(names::kCursor3, false);
    in.Cursor4Y = position(names::kCursor4, false);
    in.sngChaGain = model_.sngChaGain;
    in.lngDivPerSec = model_.lngDivPerSec;
    in.intTimeUnit = model_.intTimeUnit;
    const CursorReadouts r = zorvik::DisplayCursorData(in);
    auto show = [](QLabel* label, const std::optional<std::string>& text) {
        if (!text)
            return;
        const QString t = QString::fromStdString(*text);
        label->setText(t);
        label->setAccessibleName(t);
    };
    show(lblCVoltage, r.lblCVoltage);
    show(lblCTime, r.lblCTime);
    show(lblCFrequency, r.lblCFrequency);
}

} // namespace zorvik
