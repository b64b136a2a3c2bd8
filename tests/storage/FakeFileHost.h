// A stand-in for the main window behind the File form: a plain waveform record, the REF
// button's value, and a list of the routines the form called.
#pragma once

#include "storage/FileFormHost.h"
#include "storage/WaveformRecord.h"
#include "storage/cInifile.h"

#include <QStringList>
#include <QWidget>

namespace zorvik::testing {

class FakeFileHost final : public FileFormHost {
public:
    cInifile ini;
    WaveformRecord record;
    bool ref = true;
    bool refLoaded = false;
    QStringList calls;
    QWidget* aboutOwner = nullptr;

    cInifile& profile() override { return ini; }
    WaveformTarget& waveform() override { return record; }
    bool referenceShown() const override { return ref; }
    void setRefLoaded(bool value) override {
        refLoaded = value;
        calls << QString("blnRefLoaded=%1").arg(value ? "True" : "False");
    }
    void FormatDispData() override { calls << "FormatDispData"; }
    void ChartA() override { calls << "ChartA"; }
    void CWBRef_ValueChanged(bool Value) override {
        calls << QString("CWBRef_ValueChanged(%1)").arg(Value ? "True" : "False");
    }
    void About(QWidget* owner) override {
        aboutOwner = owner;
        calls << "About";
    }
};

} // namespace zorvik::testing
