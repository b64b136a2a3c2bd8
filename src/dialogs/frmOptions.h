// The Options dialog opened by MENU: the serial port that reaches the probe, and the colours
// of the graph's cursors, plot area and traces.
#pragma once

#include "dialogs/OptionsHost.h"

#include <QColor>
#include <QDialog>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>

class QComboBox;
class QGroupBox;
class QPushButton;
class QTabBar;

namespace zorvik {

class frmOptions : public QDialog {
    Q_OBJECT
public:
    /// Asks the user for a colour, starting from `initial`; std::nullopt when cancelled.
    using ColorChooser =
        std::function<std::optional<QColor>(const QColor& initial, QWidget* parent)>;

    /// Key code of Tab and the Ctrl bit of the shift state, as Form_KeyDown receives them.
    static constexpr int kKeyTab = 9;
    static constexpr int kShiftCtrl = 2;
    /// Left edge of the page in front and of the pages put out of sight, in twips.
    static constexpr int kPageLeftTwips = 210;
    static constexpr int kHiddenPageLeftTwips = -20000;

    explicit frmOptions(OptionsHost& host, QWidget* parent = nullptr);

    /// The colour chooser of the desktop, preset with `initial`.
    static std::optional<QColor> defaultColorChooser(const QColor& initial, QWidget* parent);
    void setColorChooser(ColorChooser chooser);

    void setHost(OptionsHost& host) { host_ = &host; }

    // Handlers of the form and its controls.
    void Form_Load();
    void Form_Unload();
    /// Ctrl+Tab selects the next tab (after the last, the first); true when the key was used.
    bool Form_KeyDown(int KeyCode, int Shift);
    void tbsOptions_Click();
    void cboComPort_Click();
    void cmdCursor1Color_Click();
    void cmdCursor2Color_Click();
    void cmdCursor3Color_Click();
    void cmdCursor4Color_Click();
    void cmdDisplayColor_Click();
    void cmdPrimaryTraceColor_Click();
    void cmdReferenceTraceColor_Click();
    void cmdDefault_Click();
    void cmdApply_Click();
    void cmdOK_Click();
    void cmdCancel_Click();

    /// The dialog's state: a port was chosen (and not yet applied, or applied while the
    /// link could not run on it), the port chosen, and whether Form_Load has filled the lists.
    bool blnPortChanged() const { return blnPortChanged_; }
    std::int16_t intPort() const { return intPort_; }
    bool blnLoaded() const { return blnLoaded_; }

    /// Closing the dialog (OK, Cancel, Escape, the window's close button) unloads it.
    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// What a colour button colours.
    enum Target {
        Cursor1,
        Cursor2,
        Cursor3,
        Cursor4,
        PlotArea,
        PrimaryTrace,
        ReferenceTrace,
        TargetCount
    };

    void buildCommunicationsPage(QWidget* page);
    void buildColorsPage(QWidget* page);
    void placeControls();
    bool keyDown(const QKeyEvent& event);
    void chooseColor(Target target);
    QColor colorOf(Target target) const;
    void setColorOf(Target target, const QColor& color);
    QColor defaultColorOf(Target target) const;
    void showSwatches();

    OptionsHost* host_;
    ColorChooser chooser_;

    bool blnPortChanged_ = false;
    std::int16_t intPort_ = 0;
    bool blnLoaded_ = false;

    QTabBar* tbsOptions = nullptr;
    QWidget* tabPane_ = nullptr;
    std::array<QWidget*, 2> picOptions{};
    QGroupBox* fraSerialPort = nullptr;
    QComboBox* cboComPort = nullptr;
    QComboBox* cboBaudRate = nullptr;
    QGroupBox* fraVcursors = nullptr;
    QGroupBox* fraHcursors = nullptr;
    QGroupBox* fraDisplay = nullptr;
    QGroupBox* fraRestore = nullptr;
    std::array<QPushButton*, TargetCount> colorButtons_{};
    QPushButton* cmdDefault = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdApply = nullptr;
};

/// MENU: creates the main window's options dialog on first use (kept as its child named
/// "frmOptions"), loads it again and shows it modally. Returns the dialog; nullptr without a
/// main window.
frmOptions* showOptions(QWidget* mainWindow, OptionsHost& host);

} // namespace zorvik
