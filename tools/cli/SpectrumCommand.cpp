// zorvik-cli spectrum: the Spectrum window's arithmetic over a recording or a .wdf.
#include "SpectrumCommand.h"

#include "ArgParser.h"
#include "ExitStatus.h"
#include "TraceInput.h"
#include "analysis/Spectrum.h"

namespace zorvik::cli {

namespace {

constexpr CommandOption kOptions[] = {{"format", true, 'f'},  {"output", true, 'o'},
                                      {"window", true, 'w'},  {"unit", true, 'u'},
                                      {"padding", true, 'p'}, {"average", true, 'a'}};

constexpr std::string_view kHelp =
    R"(  zorvik-cli spectrum FILE [-w|--window W] [-u|--unit dbv|volts] [-p|--padding P]
                    [-a|--average N] [-f|--format jsonl|csv] [-o|--output OUT]
      The magnitude spectrum of each frame of the recording FILE (read as decode reads
      it; - for standard input) or, for a FILE whose name ends in "wdf", of the reference
      trace of that Waveform Data File, with the arithmetic of the Spectrum window: the
      128 samples through the window function and a real FFT, each bin from 0 Hz to the
      Nyquist frequency as RMS volts (a sine of peak A reads A/sqrt(2) whatever the
      window; bin 0 is the DC level).
      -w, --window   rectangular, hann (the default), hamming, blackman-harris or flattop
      -u, --unit     dbv (the default; decibels relative to 1 V RMS, never below -200)
                     or volts (RMS)
      -p, --padding  1 (the default), 2, 4, 8 or 16: the transform that many times as
                     long, zeros after the samples (a smoother curve, the same levels)
      -a, --average  N: each record is the RMS average of the spectra of its frame and
                     the N-1 frames before it (from 1, the default, to 1000)
      -f, --format jsonl  (the default) one JSON object a frame:
        {"index":N,"frequency":[F,...],"magnitude":[M,...],"peak_frequency":F,
         "peak_magnitude":M}
        frequencies in hertz, magnitudes in the unit chosen, each the shortest decimal
        text of its value. The peak is the strongest tone: the highest local maximum
        above 0 Hz (the DC level and its leakage through the window are no tone); null
        when there is none. Without a sample interval (a .wdf that holds none) every
        frequency is null. N is the frame's number as decode counts it (from 0).
      -f, --format csv    the header index,frequency,magnitude,peak and one row a bin,
        peak 1 on the peak's row and 0 on the others.
      -o, --output   write to the file OUT instead of standard output; OUT appears, or
                     replaces the file there, only once the whole output is written
      Fails (status 1) as decode and wdf fail for their files.
)";

struct SpectrumArgs {
    SpectrumWindow window = SpectrumWindow::Hann;
    SpectrumUnit unit = SpectrumUnit::DBV;
    std::size_t padding = 1;
    std::size_t average = 1;
};

std::optional<SpectrumArgs> spectrumArgs(const ParsedArgs& args, int& status) {
    SpectrumArgs s;
    if (const auto text = args.value("window")) {
        const auto w = windowFromKey(*text);
        if (!w) {
            status = usageError("spectrum",
                                "--window must be rectangular, hann, hamming, blackman-harris "
                                "or flattop, not '" +
                                    *text + "'");
            return std::nullopt;
        }
        s.window = *w;
    }
    if (const auto text = args.value("unit")) {
        const auto u = unitFromKey(*text);
        if (!u) {
            status = usageError("spectrum", "--unit must be dbv or volts, not '" + *text + "'");
            return std::nullopt;
        }
        s.unit = *u;
    }
    if (const auto text = args.value("padding")) {
        const auto p = parseWholeNumber(*text, 1, 16);
        if (!p || (*p & (*p - 1)) != 0) {
            status =
                usageError("spectrum", "--padding must be 1, 2, 4, 8 or 16, not '" + *text + "'");
            return std::nullopt;
        }
        s.padding = static_cast<std::size_t>(*p);
    }
    if (const auto text = args.value("average")) {
        const auto n = parseWholeNumber(*text, 1, 1000);
        if (!n) {
            status = usageError(
                "spectrum", "--average must be a whole number from 1 to 1000, not '" + *text + "'");
            return std::nullopt;
        }
        s.average = static_cast<std::size_t>(*n);
    }
    return s;
}

void optionalNumber(std::string& out, std::optional<double> v) {
    if (v)
        appendNumber(out, *v);
    else
        out += "null";
}

void jsonRecord(std::string& out, std::int64_t index, const SpectrumResult& r, SpectrumUnit unit) {
    out += "{\"index\":";
    out += std::to_string(index);
    out += ",\"frequency\":[";
    for (std::size_t k = 0; k < r.volts.size(); ++k) {
        if (k)
            out += ',';
        optionalNumber(out,
                       r.frequency.empty() ? std::nullopt : std::optional<double>(r.frequency[k]));
    }
    out += "],\"magnitude\":[";
    const std::vector<double> m = r.magnitude(unit);
    for (std::size_t k = 0; k < m.size(); ++k) {
        if (k)
            out += ',';
        appendNumber(out, m[k]);
    }
    out += "],\"peak_frequency\":";
    optionalNumber(out, r.peakFrequency());
    out += ",\"peak_magnitude\":";
    optionalNumber(out, r.peakMagnitude(unit));
    out += '}';
}

void csvRecord(std::string& out, std::int64_t index, const SpectrumResult& r, SpectrumUnit unit) {
    const std::vector<double> m = r.magnitude(unit);
    const std::string start = std::to_string(index) + ',';
    for (std::size_t k = 0; k < m.size(); ++k) {
        if (k)
            out += '\n';
        out += start;
        if (!r.frequency.empty())
            appendNumber(out, r.frequency[k]);
        out += ',';
        appendNumber(out, m[k]);
        out += r.peak == k ? ",1" : ",0";
    }
}

} // namespace

const Command& spectrumCommand() {
    static const Command command{
        "spectrum", "spectrum FILE", "print the magnitude spectrum of each frame",
        kOptions,   kHelp,           &runSpectrum,
        false};
    return command;
}

int runSpectrum(const ParsedArgs& args) {
    int status = kExitOk;
    const std::optional<RecordingArgs> parsed = recordingArgs("spectrum", args, status);
    if (!parsed)
        return status;
    const std::optional<SpectrumArgs> options = spectrumArgs(args, status);
    if (!options)
        return status;
    const OutputFormat format = parsed->format;
    SpectrumAnalyzer analyzer;
    SpectrumAverage average;
    average.setFrames(options->average);
    return writeTraceRecords(
        *parsed, "index,frequency,magnitude,peak",
        [&](std::string& out, std::int64_t index, const TraceArray& volts, float sampleInterval) {
            const SpectrumResult r = average.add(analyzer.analyse(
                volts.data(), volts.size(), sampleInterval, options->window, options->padding));
            if (format == OutputFormat::Jsonl)
                jsonRecord(out, index, r, options->unit);
            else
                csvRecord(out, index, r, options->unit);
        });
}

} // namespace zorvik::cli
