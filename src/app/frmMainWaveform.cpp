// The main window's side of the Waveform Data File: the File form that FILE opens, and the
// panel, probe settings and reference store that a file is saved from and loaded into.
#include "app/frmMain.h"

#include "app/StoredPanelValues.h"
#include "storage/FileFormHost.h"
#include "storage/WaveformTarget.h"
#include "storage/frmFile.h"
#include "support/ModalRunner.h"
#include "widgets/Knob.h"
#include "widgets/Led.h"
#include "widgets/LitButton.h"
#include "widgets/Slide.h"

namespace zorvik {

namespace {

// A load sets the controls without running their change handlers: nothing is redrawn while the
// file is read, and a file that fails half-way leaves no half-drawn picture. What the panel
// derives from a control at once (the scale values the display reads, the lamps beside the
// buttons) follows the new value here, so the traces drawn after a successful load match the
// knobs. A value a control cannot take throws, which ends the load.
class MainWindowWaveform final : public WaveformTarget {
public:
    explicit MainWindowWaveform(frmMain& w) : w_(w) {}

    double timeRangeValue() const override { return w_.panel().CWKTimeRange->value(); }
    double chaLevelValue() const override { return w_.panel().CWKChaLvl->value(); }
    double graphOffset() const override { return w_.model().varGraphOffset; }
    double chaOffsetValue() const override { return w_.panel().CWSCHaOffset->value(); }
    bool invertValue() const override { return w_.panel().CWBChaInv->value(); }
    HardwareState hardware() const override { return w_.model().state; }
    TraceArray refVolts() const override { return w_.model().sngRefVolts; }
    float refSampleInterval() const override { return w_.model().sngRefSampleInterval; }

    void setTimeRange(std::int32_t position) override {
        setKnobFromFile(*w_.panel().CWKTimeRange, position);
        w_.SetTimeScale();
    }
    void setChaLevel(std::int32_t position) override {
        setKnobFromFile(*w_.panel().CWKChaLvl, position);
        w_.SetChaScale();
    }
    void setChaOffset(const std::string& text) override {
        setOffsetFromFile(*w_.panel().CWSCHaOffset, text);
        w_.SetChaScale();
        w_.panel().CWBChaCalLed->setValue(w_.model().sngChaOffset != 0.0f);
    }
    void setInvert(bool value) override {
        w_.panel().CWBChaInv->setValueSilently(value);
        w_.panel().CWBChaInvLed->setValue(value);
    }
    void setReference(bool value) override { w_.panel().CWBRef->setValueSilently(value); }
    void setHardware(const HardwareState& state) override { w_.model().state = state; }
    void setRefSample(std::size_t index, float volts) override {
        w_.model().sngRefVolts.at(index) = volts;
    }
    void setRefSampleInterval(float seconds) override { w_.model().sngRefSampleInterval = seconds; }

private:
    frmMain& w_;
};

class MainWindowFileHost final : public FileFormHost {
public:
    explicit MainWindowFileHost(frmMain& w) : w_(w), waveform_(w) {}

    cInifile& profile() override { return w_.profile(); }
    WaveformTarget& waveform() override { return waveform_; }
    bool referenceShown() const override { return w_.panel().CWBRef->value(); }
    void setRefLoaded(bool value) override { w_.model().blnRefLoaded = value; }
    void FormatDispData() override { w_.FormatDispData(); }
    void ChartA() override { w_.ChartA(); }
    void CWBRef_ValueChanged(bool Value) override { w_.CWBRef_ValueChanged(Value); }
    void About(QWidget* owner) override { w_.About(owner); }

private:
    frmMain& w_;
    MainWindowWaveform waveform_;
};

} // namespace

frmFile& frmMain::fileForm() {
    if (auto* form = findChild<frmFile*>("frmFile", Qt::FindDirectChildrenOnly))
        return *form;
    return *new frmFile(std::make_unique<MainWindowFileHost>(*this), this);
}

void frmMain::showFileForm() {
    frmFile& form = fileForm();
    form.Form_Load();
    runModal(form);
}

void frmMain::openWaveformFile(const QString& path) {
    fileForm().openFile(path);
}

} // namespace zorvik
