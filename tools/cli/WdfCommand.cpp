// zorvik-cli wdf: a Waveform Data File loaded as the window loads it, printed as JSON or CSV.
#include "WdfCommand.h"

#include "Commands.h"
#include "ExitStatus.h"
#include "LoadedWaveform.h"
#include "OutputSink.h"
#include "StopSignals.h"
#include "WaveformText.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace zorvik::cli {

namespace {

constexpr CommandOption kOptions[] = {{"format", true, 'f'}, {"output", true, 'o'}};

constexpr std::string_view kHelp =
    R"(  zorvik-cli wdf FILE [-f|--format json|csv] [-o|--output OUT]
      Loads the Waveform Data File FILE by the rules of Open in the File window and
      prints what the load takes from it. FILE must end in "wdf" (any letter case),
      its Name must be "Zorvik" and its Reftrace1 to Reftrace7 must hold 128 numbers;
      every value is read up to 254 characters, as the window reads it.
      -f, --format json  (the default) one JSON object on one line, keys in this order:
        {"Hscaleindex":I,"Vscaleindex":I,"Chaoffset":D,"Invert":L,"Reference":L,
         "bytSwitchSetting":B,"bytTriggerLvl":B,"bytTimebaseDef":B,"bytTriggerDef":B,
         "Tadj":F,"samples":[128 F]}
        I is a knob position, the file's number rounded (halves to even); D the
        offset as the shortest decimal text of its value; L true or false; B a byte
        in decimal (Range, Triggerlevel, Timebase, Triggerdef of the file); F the
        shortest decimal text that reads back as the same single-precision number.
        A value the file leaves out or empty is null: the window keeps its own
        value for it.
      -f, --format csv   the header line sample,time_s,volts and one row for each of
        the 128 samples: its index (0 to 127), its time (the index times Tadj's decimal
        value: 0.00015 for sample 3 at 5E-05; empty when the file has no Tadj) and the
        volts, numbers written as above.
      -o, --output OUT   write to the file OUT instead of standard output, in one step
      When the load fails, prints the window's messages on standard error, each after
      "zorvik-cli: FILE: ", nothing on standard output, and exits with status 1. A Name
      other than "Zorvik" gives the two lines
        zorvik-cli: FILE: File is not for this application!
        zorvik-cli: FILE: Please Select a Waveform Data File (*.wdf)!
      A file that is missing, unreadable or empty reads as such a Name; a line saying
      why comes first ("zorvik-cli: FILE: Permission denied"). Any other failure (a
      name not ending in "wdf", a value that does not convert, a byte above 255, fewer
      than 128 samples) gives the second line alone.
)";

enum class WdfFormat { Json, Csv };

/// Why the system cannot give the bytes of `path`, in its own words; empty when it can.
/// An empty file reads but holds nothing: "is empty".
std::string unreadableReason(const std::string& path) {
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec))
        return std::strerror(EISDIR);
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::strerror(errno);
    if (in.peek() == std::ifstream::traits_type::eof())
        return in.bad() ? "cannot be read" : "is empty";
    return {};
}

int loadFailure(const std::string& path, WaveformLoadResult result) {
    if (result == WaveformLoadResult::NotForThisApplication) {
        // The window reads the Name of a file it cannot read as empty; say why first.
        if (const std::string reason = unreadableReason(path); !reason.empty())
            printError(path + ": " + reason);
        printError(path + ": " + WaveformFile::kNotForThisApplicationText);
    }
    printError(path + ": " + WaveformFile::kLoadErrorText);
    return kExitFailure;
}

int usage(const std::string& text) {
    return usageError("wdf", text);
}

} // namespace

const Command& wdfCommand() {
    static const Command command{"wdf",    "wdf FILE", "print what a Waveform Data File holds",
                                 kOptions, kHelp,      &runWdf,
                                 false};
    return command;
}

int runWdf(const ParsedArgs& args) {
    if (args.positionals.size() != 1)
        return usage(args.positionals.empty() ? "no FILE given" : "more than one FILE given");
    WdfFormat format = WdfFormat::Json;
    if (const auto text = args.value("format")) {
        if (*text == "csv")
            format = WdfFormat::Csv;
        else if (*text != "json")
            return usage("--format must be json or csv, not '" + *text + "'");
    }

    const std::string& path = args.positionals.front();
    const LoadedWaveform loaded = loadWaveform(path);
    if (loaded.result != WaveformLoadResult::Loaded)
        return loadFailure(path, loaded.result);
    if (const int status = stopRequested())
        return stopFailure(status);

    const auto output = args.value("output");
    if (output && output->empty())
        return usage("--output needs a file name");
    // The whole text goes out in one write: a reader sees all of it or none.
    OutputSink out = output ? OutputSink(*output) : OutputSink();
    out.writeLine(format == WdfFormat::Json ? waveformJson(loaded) : waveformCsv(loaded));
    if (!out.finish()) {
        if (output && !out.closedByReader()) {
            printError(*output + ": " + out.errorText());
            return kExitFailure;
        }
        return outputFailure(out);
    }
    return kExitOk;
}

} // namespace zorvik::cli
