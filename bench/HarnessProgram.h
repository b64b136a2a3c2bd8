// The program as the harness runs it: the serial port, the port mapping and the main window put
// together the way the zorvik program's composition root does, plus what the harness needs
// around it: ways to run the event loop, a silent serial port and the virtual probe program.
#pragma once

#include "app/ProgramServices.h"
#include "app/frmMain.h"
#include "instrument/PortMap.h"
#include "instrument/QtSerialLink.h"

#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <sys/types.h>

namespace zorvik {
class frmRecording;
}

namespace zorvik::harness {

/// zorvik's main window on the real serial port. The settings file lives in `folder`, as it
/// does in the program's folder. The splash keeps no minimum display time: the harness times
/// the work of starting, not the splash's deliberate pause.
class ProgramUnderTest {
public:
    /// `devices`: COMn -> device; COM ports not named get a path that does not exist, so the
    /// machine's own serial ports never take part.
    ProgramUnderTest(const QString& folder, const std::map<int, std::string>& devices);
    ~ProgramUnderTest();

    /// What main() does: the start-up sequence, then the window is shown.
    void start();
    frmMain& window() { return *m_window; }
    QString settingsPath() const;
    /// Opens the Measurements and Spectrum windows and starts a recording, with the
    /// measurements of each frame, into the settings folder; false when it cannot start.
    bool openAnalysis();
    /// Frames the recording wrote (0 without one).
    long long framesRecorded() const;

private:
    QString m_folder;
    PortMap m_ports;
    QtSerialLink m_serial;
    std::unique_ptr<ProgramServices> m_shared;
    std::unique_ptr<frmMain> m_window;
    frmRecording* m_recording = nullptr;
};

/// Runs the event loop for `ms` milliseconds. Only the harness's own timer ends the wait, so
/// nothing of the harness wakes the loop in between.
void runFor(int ms);
/// Runs the event loop until `done` holds (checked every 10 ms) or `ms` have passed.
bool runUntil(const std::function<bool()>& done, int ms);
/// Runs `action` from the event loop, as the handler of an event (a click, a menu command),
/// and returns once it has run.
void runAsEvent(const std::function<void()>& action);

/// A pseudo-terminal nobody writes to: a serial port with nothing on the line.
class SilentPort {
public:
    SilentPort();
    ~SilentPort();
    SilentPort(const SilentPort&) = delete;
    SilentPort& operator=(const SilentPort&) = delete;
    const std::string& devicePath() const { return m_device; }

private:
    int m_master = -1;
    std::string m_device;
};

/// The zorvik-probe program running in a process of its own, so the processor time it takes
/// does not count as the program's.
class ProbeProcess {
public:
    /// Starts `program` with `arguments` plus "--link <link>"; std::runtime_error when the
    /// probe does not come up within five seconds.
    ProbeProcess(const QString& program, const QStringList& arguments, const QString& link);
    ~ProbeProcess();
    ProbeProcess(const ProbeProcess&) = delete;
    ProbeProcess& operator=(const ProbeProcess&) = delete;
    std::string devicePath() const { return m_link.toStdString(); }

private:
    pid_t m_pid = -1;
    QString m_link;
};

} // namespace zorvik::harness
