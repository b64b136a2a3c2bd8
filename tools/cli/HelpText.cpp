// The texts of zorvik-cli --help and --version.
#include "HelpText.h"

namespace zorvik::cli {

namespace {

constexpr std::string_view kIntro =
    R"(Usage: zorvik-cli COMMAND [OPTIONS] [FILE]

Records, decodes and exports the data of the Zorvik probe oscilloscope with the receive
cycle, the arithmetic and the file rules of the Zorvik window itself.

Commands:
)";

constexpr std::string_view kOutro =
    R"(
Run "zorvik-cli COMMAND --help" for a command's options and output, and
"zorvik-cli --version" for the version.
Exit status: 0 done, 1 failed, 2 usage error (zorvik-cli COMMAND --help has the rest).
)";

constexpr std::string_view kFrameOutput =
    R"(Output with --format jsonl (the default): one JSON object per accepted frame, on one
line, keys in this order.
  {"event":"frame","index":N,"bytSwitchSetting":B,"bytTimebaseDef":B,"bytTriggerDef":B,
   "bytTriggerLvl":B,"bytDVM100":B,"bytDVM10":B,"bytDVM1":B,"bytDVMflags":B,
   "sngVoltsPerCount":F,"sngSampleInterval":F,"strSampleRate":"TEXT","sngTrigLevel":F,
   "range":P,"coupling":P,"trigger":P,"raw":[128 B],"volts":[128 F]}
      N counts the accepted frames from 0. B is a byte in decimal. F is the shortest
      decimal text that reads back as the same single-precision number (4.9206333,
      5e-05, -0). The decoded values are those the window holds after this frame: a
      code the frame does not define keeps the value of an earlier frame (0 and ""
      before any). P is an indicator position as last set by a frame, null while no
      frame has set it: range 1 "100", 2 "10", 3 "1"; coupling 1 "GND", 2 "AC",
      3 "DC"; trigger 1 "FR", 2 "IN+", 3 "IN-", 4 "EX+", 5 "EX-".
      volts[i] = (raw[i] - 31) x sngVoltsPerCount in single precision.
With --events, the reads that bring no frame are printed too, in the order they
happened:
  {"event":"waiting"}
      A waiting marker (0x7D 0x7D): the probe waits for a trigger.
  {"event":"hunt"}
      A two-byte probe without a sync byte: the two bytes are dropped.
  {"event":"rejected","bytSwitchSetting":B, ... ,"bytDVMflags":B}
      The bytes read after a sync byte in second place failed the frame check; the
      eight state bytes as they were stored before the check.
  {"event":"short"}
      The stream ended inside a frame, after some of its bytes (decode only).

Output with --format csv: the header line
  frame,sample,time_s,count,volts
and one row for each of the 128 samples of every accepted frame: the frame's index
(from 0), the sample's index (0 to 127), its time (the sample's index times the
sample interval's decimal value: 0.00015 for sample 3 at 5e-05 s), the raw count and
the volts, numbers written as above.
)";

constexpr std::string_view kExitStatus =
    R"(Exit status (the same for zorvik-cli and zorvik-probe):
  0    done
  1    failed: a file could not be read or written, a Waveform Data File did not
       load, a stream holds no probe data, or the probe could not be reached (no
       answer, port failure, frame time-out)
  2    usage error: unknown command or option, missing or bad argument
  130  interrupted (SIGINT, Ctrl+C)
  141  the output was closed by its reader (a pipe into head): ends quietly
  143  terminated (SIGTERM)
Every error is one line on standard error (wdf: the window's messages, each after
"zorvik-cli: FILE: "); the output only ever gets whole lines.
)";

} // namespace

std::string fullHelp() {
    std::string text(kIntro);
    for (const Command& c : commands()) {
        std::string left = "  ";
        left += c.synopsis;
        if (left.size() < 20)
            left.resize(20, ' ');
        else
            left += "  ";
        text += left;
        text += c.summary;
        text += '\n';
    }
    text += kOutro;
    return text;
}

std::string commandHelp(const Command& command) {
    std::string text = "Usage:\n";
    text += command.help;
    if (command.printsFrames) {
        text += '\n';
        text += kFrameOutput;
    }
    text += '\n';
    text += kExitStatus;
    return text;
}

std::string versionText() {
    return std::string("zorvik-cli ") + ZORVIK_VERSION + "\n";
}

} // namespace zorvik::cli
