// The magnitude spectrum of a trace.
#include "analysis/Spectrum.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fftw3.h>
#include <numbers>

namespace zorvik {

namespace {

struct WindowInfo {
    SpectrumWindow window;
    std::string_view key;
    const char* name;
    std::array<double, 5> a; // cosine-sum coefficients a0 .. a4
};

// Hamming: the classic 0.54 / 0.46. Blackman-Harris: the four-term minimum (-92 dB side
// lobes). Flat top: the five-term window whose top is flat to 0.01 dB over a bin, so a tone
// between two bins still reads its level.
constexpr WindowInfo kWindows[kSpectrumWindowCount] = {
    {SpectrumWindow::Rectangular, "rectangular", "Rectangular", {1.0, 0.0, 0.0, 0.0, 0.0}},
    {SpectrumWindow::Hann, "hann", "Hann", {0.5, 0.5, 0.0, 0.0, 0.0}},
    {SpectrumWindow::Hamming, "hamming", "Hamming", {0.54, 0.46, 0.0, 0.0, 0.0}},
    {SpectrumWindow::BlackmanHarris,
     "blackman-harris",
     "Blackman-Harris",
     {0.35875, 0.48829, 0.14128, 0.01168, 0.0}},
    {SpectrumWindow::FlatTop,
     "flattop",
     "Flat top",
     {0.21557895, 0.41663158, 0.277263158, 0.083578947, 0.006947368}},
};

const WindowInfo& info(SpectrumWindow w) {
    return kWindows[static_cast<std::size_t>(w)];
}

constexpr std::pair<SpectrumUnit, std::string_view> kUnits[] = {{SpectrumUnit::DBV, "dbv"},
                                                                {SpectrumUnit::Volts, "volts"}};

} // namespace

std::string_view windowKey(SpectrumWindow w) {
    return info(w).key;
}

std::optional<SpectrumWindow> windowFromKey(std::string_view key) {
    for (const WindowInfo& w : kWindows)
        if (w.key == key)
            return w.window;
    return std::nullopt;
}

const char* windowName(SpectrumWindow w) {
    return info(w).name;
}

std::string_view unitKey(SpectrumUnit u) {
    for (const auto& [unit, key] : kUnits)
        if (unit == u)
            return key;
    return {};
}

std::optional<SpectrumUnit> unitFromKey(std::string_view key) {
    for (const auto& [unit, k] : kUnits)
        if (k == key)
            return unit;
    return std::nullopt;
}

std::vector<double> windowCoefficients(SpectrumWindow w, std::size_t n) {
    const std::array<double, 5>& a = info(w).a;
    std::vector<double> c(n);
    for (std::size_t k = 0; k < n; ++k) {
        const double x = 2.0 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(n);
        double sum = 0.0;
        for (std::size_t j = 0; j < a.size(); ++j)
            sum += (j % 2 ? -a[j] : a[j]) * std::cos(static_cast<double>(j) * x);
        c[k] = sum;
    }
    return c;
}

double coherentGain(SpectrumWindow w, std::size_t n) {
    if (n == 0)
        return 0.0;
    const std::vector<double> c = windowCoefficients(w, n);
    double sum = 0.0;
    for (double v : c)
        sum += v;
    return sum / static_cast<double>(n);
}

double toDbv(double rmsVolts) {
    if (!(rmsVolts > 0.0))
        return kDbvFloor;
    return std::max(kDbvFloor, 20.0 * std::log10(rmsVolts));
}

std::vector<double> SpectrumResult::magnitude(SpectrumUnit unit) const {
    if (unit == SpectrumUnit::Volts)
        return volts;
    std::vector<double> db(volts.size());
    std::transform(volts.begin(), volts.end(), db.begin(), toDbv);
    return db;
}

std::optional<double> SpectrumResult::peakMagnitude(SpectrumUnit unit) const {
    if (!peak)
        return std::nullopt;
    const double v = volts[*peak];
    return unit == SpectrumUnit::Volts ? v : toDbv(v);
}

std::optional<double> SpectrumResult::peakFrequency() const {
    if (!peak || frequency.empty())
        return std::nullopt;
    return frequency[*peak];
}

std::optional<std::size_t> findPeak(const std::vector<double>& volts) {
    std::optional<std::size_t> best;
    for (std::size_t k = 1; k < volts.size(); ++k) {
        // Bin 0 has no mirror: next to bin 1 it weighs as both halves would, so the leakage of
        // the DC level, which falls from bin 0 in the transform itself, falls here too.
        const double left = k == 1 ? volts[0] * std::numbers::sqrt2 : volts[k - 1];
        const bool rises = volts[k] > left;
        const bool holds = k + 1 == volts.size() || volts[k] >= volts[k + 1];
        if (rises && holds && (!best || volts[k] > volts[*best]))
            best = k;
    }
    return best;
}

struct SpectrumAnalyzer::Plan {
    std::size_t count = 0;
    std::size_t length = 0;
    SpectrumWindow window = SpectrumWindow::Rectangular;
    std::vector<double> coefficients;
    double scale = 0.0; // 1 / (count * coherent gain)
    float* in = nullptr;
    fftwf_complex* out = nullptr;
    fftwf_plan plan = nullptr;

    ~Plan() { release(); }
    void release() {
        if (plan)
            fftwf_destroy_plan(plan);
        fftwf_free(in);
        fftwf_free(out);
        plan = nullptr;
        in = nullptr;
        out = nullptr;
    }
};

SpectrumAnalyzer::SpectrumAnalyzer() : plan_(std::make_unique<Plan>()) {}
SpectrumAnalyzer::~SpectrumAnalyzer() = default;

SpectrumResult SpectrumAnalyzer::analyse(const float* samples, std::size_t count,
                                         double sampleInterval, SpectrumWindow w,
                                         std::size_t padding) {
    SpectrumResult r;
    if (count == 0)
        return r;
    padding = std::clamp<std::size_t>(padding, 1, 16);
    const std::size_t length = count * padding;
    Plan& p = *plan_;
    if (p.length != length || !p.plan) {
        p.release();
        p.length = length;
        p.in = fftwf_alloc_real(length);
        p.out = fftwf_alloc_complex(length / 2 + 1);
        // FFTW_ESTIMATE plans at once without trying transforms (and without touching the
        // buffers), which for 128 to 2048 points costs less than measuring would save.
        p.plan = fftwf_plan_dft_r2c_1d(static_cast<int>(length), p.in, p.out, FFTW_ESTIMATE);
        p.count = 0;
    }
    if (p.count != count || p.window != w) {
        p.count = count;
        p.window = w;
        p.coefficients = windowCoefficients(w, count);
        double sum = 0.0;
        for (double c : p.coefficients)
            sum += c;
        p.scale = 1.0 / sum;
    }
    for (std::size_t k = 0; k < count; ++k)
        p.in[k] = static_cast<float>(static_cast<double>(samples[k]) * p.coefficients[k]);
    std::fill(p.in + count, p.in + length, 0.0f);
    fftwf_execute(p.plan);

    const std::size_t bins = length / 2 + 1;
    r.volts.resize(bins);
    for (std::size_t k = 0; k < bins; ++k) {
        const double re = p.out[k][0];
        const double im = p.out[k][1];
        const double level = std::hypot(re, im) * p.scale;
        // A sine of peak A puts A/2 into its bin and A/2 into the mirror bin: both halves,
        // as RMS, are A/sqrt(2). Bin 0 (and the Nyquist bin of an even length) has no mirror
        // and is a level as it is.
        const bool single = k == 0 || (length % 2 == 0 && k == length / 2);
        r.volts[k] = single ? level : level * std::numbers::sqrt2;
    }
    if (sampleInterval > 0.0) {
        r.binWidth = 1.0 / (static_cast<double>(length) * sampleInterval);
        r.frequency.resize(bins);
        for (std::size_t k = 0; k < bins; ++k)
            r.frequency[k] = static_cast<double>(k) * r.binWidth;
    }
    r.peak = findPeak(r.volts);
    return r;
}

void SpectrumAverage::setFrames(std::size_t frames) {
    frames_ = std::max<std::size_t>(frames, 1);
    while (history_.size() > frames_) {
        for (std::size_t k = 0; k < sum_.size(); ++k)
            sum_[k] -= history_.front()[k];
        history_.erase(history_.begin());
    }
}

void SpectrumAverage::reset() {
    history_.clear();
    sum_.clear();
    binWidth_ = -1.0;
}

SpectrumResult SpectrumAverage::add(const SpectrumResult& spectrum) {
    if (spectrum.volts.size() != sum_.size() || spectrum.binWidth != binWidth_)
        reset();
    binWidth_ = spectrum.binWidth;
    std::vector<double> power(spectrum.volts.size());
    for (std::size_t k = 0; k < power.size(); ++k)
        power[k] = spectrum.volts[k] * spectrum.volts[k];
    if (sum_.empty())
        sum_.assign(power.size(), 0.0);
    if (history_.size() == frames_) {
        for (std::size_t k = 0; k < sum_.size(); ++k)
            sum_[k] -= history_.front()[k];
        history_.erase(history_.begin());
    }
    for (std::size_t k = 0; k < sum_.size(); ++k)
        sum_[k] += power[k];
    history_.push_back(std::move(power));

    SpectrumResult mean = spectrum;
    const double n = static_cast<double>(history_.size());
    for (std::size_t k = 0; k < sum_.size(); ++k)
        mean.volts[k] = std::sqrt(std::max(0.0, sum_[k] / n));
    mean.peak = findPeak(mean.volts);
    return mean;
}

} // namespace zorvik
