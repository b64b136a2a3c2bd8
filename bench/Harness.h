// The measurements of the performance harness, one function each; HarnessMain.cpp picks one
// from the command line. Each prints its figures as RESULT lines (HarnessReport.h) and returns
// the process's exit status.
#pragma once

#include <QString>
#include <QStringList>

namespace zorvik::harness {

struct Options {
    int runs = 10;           ///< start-ups timed
    int idleSeconds = 10;    ///< each idle measurement
    int lineSeconds = 30;    ///< streaming at the line rate, for the processor time
    int latencySeconds = 60; ///< frames timed from the wire to the screen
    int unpacedFrames = 50000;
    int fileRounds = 20;        ///< saves and loads of a .wdf
    bool profileEvents = false; ///< print where the processor time goes while streaming
    /// With the Measurements and Spectrum windows open and a recording (with measurements)
    /// running, in the session and the streams.
    bool analysis = false;
    QString probeProgram; ///< zorvik-probe; default: beside the harness
    QString self;         ///< this program, for the start-up runs
};

/// Start-up to the first painted panel and peak memory, over `runs` fresh processes.
int measureStartup(const Options& options);
/// One process started as `measureStartup` starts it: times its own start-up and exits.
int startupChild(qint64 startedNs, const QString& folder);
/// A user's session against the zorvik-probe program at the line rate: idle with POWER off,
/// the port search, streaming (processor time), .wdf saves and loads, idle again, shutdown.
int measureSession(const Options& options);
/// Latency from the last byte of a frame on the wire to the painted graph, at the line rate.
int measureLatency(const Options& options);
/// Frames per second through the whole program with the probe unpaced, and frames lost.
int measureUnpaced(const Options& options);

} // namespace zorvik::harness
