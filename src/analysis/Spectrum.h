// The magnitude spectrum of a trace: the 128 samples of a frame through a window function and
// a real FFT (FFTW, single precision), scaled so that a sine of peak amplitude A reads its RMS
// value A/sqrt(2) whatever the window, with zero padding for a smoother curve and averaging
// over frames.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace zorvik {

/// Window functions, all in their periodic (DFT-even) form.
enum class SpectrumWindow { Rectangular, Hann, Hamming, BlackmanHarris, FlatTop };
inline constexpr std::size_t kSpectrumWindowCount = 5;

/// How magnitudes are given: RMS volts, or decibels relative to 1 V RMS.
enum class SpectrumUnit { DBV, Volts };

/// "rectangular", "hann", "hamming", "blackman-harris", "flattop": the names the command line
/// and the settings file use.
std::string_view windowKey(SpectrumWindow w);
std::optional<SpectrumWindow> windowFromKey(std::string_view key);
/// "Rectangular", "Hann", "Hamming", "Blackman-Harris", "Flat top": as the window lists them.
const char* windowName(SpectrumWindow w);
/// "dbv" or "volts"; the reverse.
std::string_view unitKey(SpectrumUnit u);
std::optional<SpectrumUnit> unitFromKey(std::string_view key);

/// The `n` coefficients of window `w` (periodic form: w[k] = sum (-1)^j a_j cos(2 pi j k / n)).
std::vector<double> windowCoefficients(SpectrumWindow w, std::size_t n);
/// The window's coherent gain: the mean of its coefficients (1 for rectangular, 0.5 for Hann).
double coherentGain(SpectrumWindow w, std::size_t n);

/// Magnitudes in dBV never go below this (the level of a bin that holds exactly nothing), so
/// every value is a finite number.
inline constexpr double kDbvFloor = -200.0;

/// 20 log10(volts), no lower than kDbvFloor.
double toDbv(double rmsVolts);

/// One spectrum: the bins from 0 Hz to the Nyquist frequency.
struct SpectrumResult {
    /// Frequency of each bin in hertz; empty when the sample interval is not known (not
    /// positive), the bins then have no frequency.
    std::vector<double> frequency;
    /// RMS volts of each bin (bin 0: the mean, the DC level, as it is).
    std::vector<double> volts;
    /// Width of a bin in hertz (0 when the sample interval is not known).
    double binWidth = 0.0;
    /// The highest local maximum above 0 Hz: the strongest tone. The DC level and its leakage
    /// through the window fall away from bin 0 and so are never taken for a tone. None when no
    /// bin above 0 Hz rises above a neighbour (a trace that is zero everywhere).
    std::optional<std::size_t> peak;

    /// Magnitudes in `unit`.
    std::vector<double> magnitude(SpectrumUnit unit) const;
    /// The peak's level in `unit`; its frequency (none without a known sample interval).
    std::optional<double> peakMagnitude(SpectrumUnit unit) const;
    std::optional<double> peakFrequency() const;
};

/// Works out spectra; keeps its FFTW plan and buffers for the size last used, so a stream of
/// frames costs one transform each. Not to be shared between threads.
class SpectrumAnalyzer {
public:
    SpectrumAnalyzer();
    ~SpectrumAnalyzer();
    SpectrumAnalyzer(const SpectrumAnalyzer&) = delete;
    SpectrumAnalyzer& operator=(const SpectrumAnalyzer&) = delete;

    /// The spectrum of `count` samples `sampleInterval` seconds apart, through window `w`, the
    /// transform `padding` times as long as the samples (1, 2, 4, 8 or 16; zeros appended after
    /// the windowed samples, which interpolates the curve and leaves each level where it was).
    SpectrumResult analyse(const float* samples, std::size_t count, double sampleInterval,
                           SpectrumWindow w, std::size_t padding = 1);

private:
    struct Plan;
    std::unique_ptr<Plan> plan_;
};

/// Averages spectra over the last `frames` of them (the mean of their powers, RMS averaging, so
/// a steady tone keeps its level and noise settles); a change of window, padding or interval
/// starts it again.
class SpectrumAverage {
public:
    void setFrames(std::size_t frames);
    std::size_t frames() const { return frames_; }
    /// Adds `spectrum` and returns the average of it and those before it (at most `frames`).
    SpectrumResult add(const SpectrumResult& spectrum);
    /// How many spectra the present average holds.
    std::size_t count() const { return history_.size(); }
    void reset();

private:
    std::size_t frames_ = 1;
    std::vector<std::vector<double>> history_; // powers, oldest first
    std::vector<double> sum_;
    double binWidth_ = -1.0;
};

/// Finds the highest local maximum above bin 0 of `volts` (see SpectrumResult::peak).
std::optional<std::size_t> findPeak(const std::vector<double>& volts);

} // namespace zorvik
