// The main window's front panel: its controls, by the names the program gives them, and the
// colours the graph had when the window started.
#pragma once

#include <QColor>
#include <array>

class QLabel;

namespace zorvik {

class IndicatorSlide;
class Knob;
class Led;
class LitButton;
class ScopeGraph;
class Slide;

/// Default (design-time) colours of the graph, recorded at start-up.
struct GraphColors {
    std::array<QColor, 4> cursors; ///< "Cursor1".."Cursor4"
    QColor display;                ///< the plot area
    QColor primaryTrace;           ///< plot "CHa"
    QColor referenceTrace;         ///< plot "Ref"
};

/// The controls are children of the main window, which makes them in buildPanel.
struct FrontPanel {
    ScopeGraph* CWGraph1 = nullptr;
    IndicatorSlide* CWSTrigInd = nullptr;
    Slide* CWSPan = nullptr;
    LitButton* CWBFile = nullptr;
    LitButton* CWBHelp = nullptr;
    LitButton* CWBMenu = nullptr;
    LitButton* CWBPrint = nullptr;
    LitButton* CWBVCursors = nullptr;
    LitButton* CWBHCursors = nullptr;
    LitButton* CWBRef = nullptr;
    LitButton* CWBStoreRef = nullptr;
    LitButton* CWBPwr = nullptr;
    Led* CWBPwrLed = nullptr;
    IndicatorSlide* CWSRange = nullptr;
    IndicatorSlide* CWSCoupling = nullptr;
    IndicatorSlide* CWSTrigger = nullptr;
    Knob* CWKTimeRange = nullptr;
    Knob* CWKChaLvl = nullptr;
    Slide* CWSCHaOffset = nullptr;
    LitButton* CWBChaInv = nullptr;
    Led* CWBChaInvLed = nullptr;
    LitButton* CWBCHaCal = nullptr;
    Led* CWBChaCalLed = nullptr;
    QLabel* lblCVoltage = nullptr;
    QLabel* lblCTime = nullptr;
    QLabel* lblCFrequency = nullptr;
    QLabel* sbrBaudRate = nullptr;
    QLabel* sbrComPort = nullptr;
    QLabel* sbrSampleRate = nullptr;

    /// Colours the graph had at start-up (the options dialog's defaults).
    GraphColors defaultColors;
};

} // namespace zorvik
