// The oscilloscope's main window: front panel, graph, status bar, and the instrument link.
#pragma once

#include "app/FrontPanel.h"
#include "display/DisplayModel.h"
#include "instrument/InstrumentLink.h"
#include "support/SystemInfoDialog.h"
#include "support/frmSplash.h"

#include <QColor>
#include <QElapsedTimer>
#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>

class QGroupBox;
class QTimer;

namespace zorvik {

class ElasticWidgetForm;
class PrintingServices;
class AcquisitionFeed;
class cInifile;
class cHTMLHelp;
class class_Elastic;
class OptionsHost;
class frmFile;

/// What the composition root hands the main window (ProgramServices::handTo fills in all but
/// the folders and files).
struct MainWindowServices {
    SerialLink* serial = nullptr;         ///< the serial control `CWSerial1`
    const PortMap* ports = nullptr;       ///< COM1..COM8 and their devices
    InstrumentLink* link = nullptr;       ///< the link that drives `serial`
    AcquisitionFeed* feed = nullptr;      ///< decoded frames in, the displayed acquisition out
    cInifile* ini = nullptr;              ///< the INI object the settings and waveform files use
    PrintingServices* printing = nullptr; ///< `EasyPrint1`, the picture holder, the margins
    /// Tells whether a device exists, without opening it.
    std::function<bool(const QString&)> deviceExists;
    QString programFolder; ///< folder of the running program
    /// The settings file (empty: settings are neither read nor written).
    QString settingsPath;
    /// When `settingsPath` is the per-user copy: the ZORVIK.INI beside the program, read until
    /// the copy exists and copied into it by the first save.
    QString settingsOriginal;
    /// Minimum time the splash stays on screen at start-up, in milliseconds.
    int splashMinDisplayMs = 3000;
};

/// The controls are reached from outside through panel(); inside, by their names.
class frmMain : public QMainWindow, private FrontPanel {
    Q_OBJECT
public:
    explicit frmMain(const MainWindowServices& services, QWidget* parent = nullptr);
    ~frmMain() override;

    /// The start-up sequence; the window is shown afterwards by the caller.
    void Form_Load();

    // Link values.
    std::int16_t ComPort = 1;
    bool blnAutoPort = true;
    std::int32_t lngBaudRate = 19200;

    /// The acquisition on screen: the record shown, the scale, the traces, the reference store.
    DisplayModel& model() { return model_; }
    const DisplayModel& model() const { return model_; }

    InstrumentLink& link() { return *link_; }
    const PortMap& ports() const { return *services_.ports; }
    /// True while a power-on search for the probe runs.
    bool searching() const;

    // Routines of the display.
    void FormatDispData();
    void ChartA();
    void ShowTrigLevel();
    void SetXAxis();
    void SetChaScale();
    void SetTimeScale();
    void DisplayCursorData();

    // The link.
    bool ComPortExists(std::int16_t n) const;
    void InitHdwe();
    /// Holds acquisition (STORE): frames are no longer accepted and reception stops.
    void holdAcquisition();
    /// Resumes acquisition: frames accepted again, input reset, the two-byte read re-armed.
    void resumeAcquisition();
    /// Closes the port (reception stops; a running search ends and POWER goes off).
    void closePort();
    /// Opens the port now in `ComPort`; reception continues on it while acquisition runs. A
    /// port that cannot be opened takes the link's failure path.
    void openPort();

    // Handlers of the front panel.
    void CWBPwr_ValueChanged(bool Value);
    void CWKTimeRange_ValueChanged(int Value);
    void CWKChaLvl_ValueChanged(int Value);
    void CWSCHaOffset_ValueChanged(double Value);
    void CWBCHaCal_ValueChanged(bool Value);
    void CWBChaInv_ValueChanged(bool Value);
    void CWSPan_ValueChanged(double Value);
    void CWBVCursors_ValueChanged(bool Value);
    void CWBHCursors_ValueChanged(bool Value);
    void CWBStoreRef_ValueChanged(bool Value);
    void CWBRef_ValueChanged(bool Value);
    void CWBFile_ValueChanged(bool Value);
    void CWBMenu_ValueChanged(bool Value);
    void CWBHelp_ValueChanged(bool Value);
    void CWBPrint_ValueChanged(bool Value);
    void CWGraph1_CursorChange(const QString& name);

    /// Shows the options dialog modally (created on first use, loaded again each time).
    void showOptionsForm();

    /// The print control `EasyPrint1`, the hidden picture holder and the kept margins.
    PrintingServices& printing() { return *printing_; }
    /// The program's INI object.
    cInifile& profile() { return *services_.ini; }
    /// The splash form, which also serves as the About box.
    frmSplash* splash() const { return splash_; }
    /// Shows the About box, owned by `owner`.
    void About(QWidget* owner);
    /// Path of the manual's first page: the program's folder, "Help", "index.html".
    QString helpFile() const;

    /// The File form, created on first use and kept (with its current file) while the window
    /// lives.
    frmFile& fileForm();
    /// Shows the File form modally, centred on the screen.
    void showFileForm();
    /// Loads a Waveform Data File as the reference trace, as File -> Open does.
    void openWaveformFile(const QString& path);

    /// The front panel's controls (and the graph's start-up colours).
    const FrontPanel& panel() const { return *this; }

    /// The page of the manual that F1 opens for `window` (a file name such as "options.html").
    static QString helpPageFor(const QWidget* window);
    /// Opens the manual at the page for `window`, in a help window that belongs to it.
    void showHelpFor(QWidget* window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void buildPanel();
    void connectPanel();
    void setStatus(QLabel* panel, const QString& text);
    void writeBareStatusLabels();
    void hideIndicatorPointers();
    void recordDefaultColors();
    void Form_Resize();
    void placeAtDesignSize();
    void settleStartupPlacement();
    void Form_Unload();
    void readSettings();
    void writeSettings();
    void powerOn();
    void powerOff();
    void onSearchFinished(bool answered, int port);
    void onReceived(const ReceiveStep& step);
    void showFrame(const DecodedFrame& frame);
    void CWSerial1_Error();
    QList<SerialPortRow> serialPortRows() const;
    static void releaseAfterModal(LitButton* button);

    MainWindowServices services_;
    InstrumentLink* link_ = nullptr;
    DisplayModel model_;
    QPointer<frmSplash> splash_;
    std::unique_ptr<class_Elastic> elastic_;
    std::unique_ptr<ElasticWidgetForm> elasticForm_;
    std::unique_ptr<cHTMLHelp> help_;
    PrintingServices* printing_ = nullptr;
    std::unique_ptr<OptionsHost> optionsHost_;
    bool layoutSuspended_ = false;
    bool unloaded_ = false;
    bool inErrorPath_ = false;
    bool fileFormOpen_ = false;     ///< the File window that FILE opened is open
    bool startupPlacement_ = false; ///< the start-up size waits for the window manager's frame
    bool shownOnce_ = false;
    QPointer<QTimer> frameWatch_;   ///< looks for that frame after the window shows
    QElapsedTimer frameWatchClock_; ///< time since the frame watch started
};

} // namespace zorvik
