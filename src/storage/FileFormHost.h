// What the File form needs of the main window: the panel and reference store a file is saved
// from and loaded into, whether the reference is shown, and the routines that bring a loaded
// reference on screen.
#pragma once

class QWidget;

namespace zorvik {

class WaveformTarget;
class cInifile;

/// Implemented by the main window; every call runs on the user-interface thread.
class FileFormHost {
public:
    virtual ~FileFormHost() = default;

    /// The program's INI object, through which files are read and written.
    virtual cInifile& profile() = 0;
    /// The front panel, the hardware-state record and the reference store.
    virtual WaveformTarget& waveform() = 0;
    /// Value of CWBRef: the reference trace is shown.
    virtual bool referenceShown() const = 0;
    /// Sets blnRefLoaded: the reference came from a file.
    virtual void setRefLoaded(bool value) = 0;
    /// Decodes the hardware-state record onto the panel and the status bar.
    virtual void FormatDispData() = 0;
    /// Draws the live and reference traces.
    virtual void ChartA() = 0;
    /// The change handler of CWBRef.
    virtual void CWBRef_ValueChanged(bool Value) = 0;
    /// Shows the About box, owned by `owner`.
    virtual void About(QWidget* owner) = 0;
};

} // namespace zorvik
