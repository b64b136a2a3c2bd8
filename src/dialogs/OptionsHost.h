// What the options dialog needs of the main window: the port in use and the link's
// open/close/resume operations, and the colours of the graph's cursors, plot area and traces.
#pragma once

#include <QColor>
#include <QString>
#include <cstdint>

namespace zorvik {

/// Implemented by the main window, which owns the port, the link and the graph `CWGraph1`.
/// Every call runs on the user-interface thread while the dialog is open.
class OptionsHost {
public:
    virtual ~OptionsHost() = default;

    // --- Serial port -------------------------------------------------------------------

    /// True when port COMn (n from 1 to 8) exists on this system; nothing is opened.
    virtual bool ComPortExists(int n) const = 0;
    /// What the port list's tool tip says of COMn: its device and what the system knows of
    /// it ("/dev/ttyUSB0: FT232R USB UART, FTDI, serial A9012345, 0403:6001").
    virtual QString portDescription(int n) const = 0;
    /// `ComPort`: the number (1 to 8) of the port the link uses.
    virtual std::int16_t ComPort() const = 0;
    /// Sets `ComPort`. The dialog calls it only when Apply (or OK) applies the user's choice.
    virtual void setComPort(std::int16_t n) = 0;
    /// Clears `blnAutoPort`: from now on POWER uses `ComPort` only and no longer searches the
    /// ports. The dialog calls it right after `setComPort`, so the automatic search ends
    /// exactly when a port chosen by the user is applied; a choice that is cancelled keeps it.
    virtual void clearAutoPort() = 0;

    /// True while the serial port is open.
    virtual bool portIsOpen() const = 0;
    /// Closes the serial port (harmless when it is closed already).
    virtual void closePort() = 0;
    /// Opens the port now in `ComPort`. While acquisition runs, reception continues on it
    /// (the main window re-arms its read). A port that has vanished or cannot be opened takes
    /// the link's own failure path: the message "Unable to Communicate with Instrument - Check
    /// Port Connection!" and POWER off, after which `portIsOpen()` and `liveData()` are false.
    virtual void openPort() = 0;
    /// `blnLiveData`: the link to the probe is up.
    virtual bool liveData() const = 0;
    /// Called when the dialog closes after a port change: set `blnAcquire`, reset the port's
    /// input and re-arm the two-byte read that starts the receive cycle, as on releasing
    /// STORE. The port may be closed at this point (a port chosen while the probe is off, or
    /// one that brought no live data); there is then no read to arm until POWER opens it.
    virtual void resumeReception() = 0;

    // --- Graph colours (each change shows on the graph at once) --------------------------

    /// Colour of the graph cursor `cursor` ("Cursor1" to "Cursor4").
    virtual QColor cursorColor(const QString& cursor) const = 0;
    virtual void setCursorColor(const QString& cursor, const QColor& color) = 0;
    /// Colour of the graph's plot area.
    virtual QColor plotAreaColor() const = 0;
    virtual void setPlotAreaColor(const QColor& color) = 0;
    /// Line colour of the plot `plot` ("CHa", the live trace, or "Ref", the reference).
    virtual QColor plotLineColor(const QString& plot) const = 0;
    virtual void setPlotLineColor(const QString& plot, const QColor& color) = 0;

    /// The colours the graph had when the main window started, before the settings file was
    /// read: what "Restore Defaults" puts back.
    virtual QColor defaultCursorColor(const QString& cursor) const = 0;
    virtual QColor defaultPlotAreaColor() const = 0;
    virtual QColor defaultPlotLineColor(const QString& plot) const = 0;

    // --- Main window ---------------------------------------------------------------------

    /// The last step of Apply: the main window redraws itself.
    virtual void refreshMainWindow() = 0;
};

} // namespace zorvik
