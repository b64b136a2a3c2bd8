// Automatic measurements of a trace.
#include "analysis/Measurements.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <vector>

namespace zorvik {

namespace {

struct Info {
    const char* name;
    const char* unit;
    const char* key;
};
constexpr Info kInfo[kMeasureCount] = {
    {"Maximum", "V", "max"},
    {"Minimum", "V", "min"},
    {"Peak-to-peak", "V", "peak_to_peak"},
    {"Mean", "V", "mean"},
    {"RMS", "V", "rms"},
    {"AC RMS", "V", "ac_rms"},
    {"Top", "V", "top"},
    {"Base", "V", "base"},
    {"Amplitude", "V", "amplitude"},
    {"Overshoot", "%", "overshoot"},
    {"Frequency", "Hz", "frequency"},
    {"Period", "s", "period"},
    {"Positive width", "s", "positive_width"},
    {"Negative width", "s", "negative_width"},
    {"Duty cycle", "%", "duty_cycle"},
    {"Rise time", "s", "rise_time"},
    {"Fall time", "s", "fall_time"},
};

/// `v` with `decimals` decimals and a '.', whatever the locale.
std::string fixed(double v, int decimals) {
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, v, std::chars_format::fixed, decimals);
    std::string s(text, end.ptr);
    if (s.rfind("-0.", 0) == 0 && s.find_first_not_of("-0.") == std::string::npos)
        s.erase(0, 1); // no "-0.000"
    return s;
}

void set(MeasureValues& v, Measure m, std::optional<double> value) {
    v[static_cast<std::size_t>(m)] = value;
}

/// The most frequent of `values` (the one nearer the extreme on a tie, `upper` saying which
/// extreme), or std::nullopt when none repeats.
std::optional<double> mode(const std::vector<double>& values, bool upper) {
    std::map<double, int> counts;
    for (double v : values)
        ++counts[v];
    std::optional<double> best;
    int bestCount = 1;
    for (const auto& [value, count] : counts) {
        if (count > bestCount || (count == bestCount && best && upper)) {
            best = value;
            bestCount = count;
        }
    }
    return best;
}

/// A crossing of a level: where it lies, in samples, and in which direction.
struct Crossing {
    double at;
    bool rising;
};

/// Crossings of `mid` with hysteresis: the signal must have been below mid - h before a rising
/// crossing counts, and above mid + h before a falling one.
std::vector<Crossing> crossings(const TraceArray& v, double mid, double h) {
    std::vector<Crossing> out;
    int state = 0; // -1 below the band, +1 above it, 0 not known yet
    for (std::size_t i = 0; i < v.size(); ++i) {
        const double x = v[i];
        if (x < mid - h) {
            if (state == 1) {
                // Falling: the last crossing of mid before here.
                std::size_t j = i;
                while (j > 0 && static_cast<double>(v[j - 1]) < mid)
                    --j;
                if (j > 0) {
                    const double a = v[j - 1], b = v[j];
                    out.push_back({static_cast<double>(j - 1) + (a - mid) / (a - b), false});
                }
            }
            state = -1;
        } else if (x > mid + h) {
            if (state == -1) {
                std::size_t j = i;
                while (j > 0 && static_cast<double>(v[j - 1]) > mid)
                    --j;
                if (j > 0) {
                    const double a = v[j - 1], b = v[j];
                    out.push_back({static_cast<double>(j - 1) + (mid - a) / (b - a), true});
                }
            }
            state = 1;
        }
    }
    return out;
}

/// Where the signal crosses `level` between samples i-1 and i, by linear interpolation.
double at(const TraceArray& v, std::size_t i, double level) {
    const double a = v[i - 1], b = v[i];
    return static_cast<double>(i - 1) + (level - a) / (b - a);
}

/// Mean duration, in samples, of the whole edges from `from` to `to` (rising when from < to).
std::optional<double> edgeTime(const TraceArray& v, double from, double to) {
    const bool rising = from < to;
    auto past = [rising](double x, double level) { return rising ? x >= level : x <= level; };
    auto before = [rising](double x, double level) { return rising ? x < level : x > level; };
    double sum = 0.0;
    int edges = 0;
    std::optional<double> start; // the last crossing of `from` on the way
    for (std::size_t i = 1; i < v.size(); ++i) {
        const double a = v[i - 1], b = v[i];
        if (before(a, from) && past(b, from))
            start = at(v, i, from);
        if (start && before(a, to) && past(b, to)) {
            sum += at(v, i, to) - *start;
            ++edges;
            start.reset();
        }
        // Back across `from` before reaching `to`: that edge was not whole.
        if (start && past(a, from) && before(b, from))
            start.reset();
    }
    if (edges == 0)
        return std::nullopt;
    return sum / edges;
}

} // namespace

const char* measureName(Measure m) {
    return kInfo[static_cast<std::size_t>(m)].name;
}

const char* measureUnit(Measure m) {
    return kInfo[static_cast<std::size_t>(m)].unit;
}

const char* measureKey(Measure m) {
    return kInfo[static_cast<std::size_t>(m)].key;
}

MeasureValues measure(const TraceArray& volts, float sampleInterval) {
    MeasureValues r{};
    for (float v : volts) {
        if (!std::isfinite(v))
            return r;
    }
    const double n = static_cast<double>(volts.size());
    const double high = *std::max_element(volts.begin(), volts.end());
    const double low = *std::min_element(volts.begin(), volts.end());
    double sum = 0.0, squares = 0.0;
    for (float v : volts) {
        sum += v;
        squares += static_cast<double>(v) * v;
    }
    const double mean = sum / n;
    double deviations = 0.0;
    for (float v : volts)
        deviations += (v - mean) * (v - mean);
    set(r, Measure::Maximum, high);
    set(r, Measure::Minimum, low);
    set(r, Measure::PeakToPeak, high - low);
    set(r, Measure::Mean, mean);
    set(r, Measure::Rms, std::sqrt(squares / n));
    set(r, Measure::AcRms, std::sqrt(deviations / n));

    // State levels: the histogram's modes above and below the middle of the range.
    const double middle = (high + low) / 2.0;
    std::vector<double> upper, lower;
    for (float v : volts)
        (v >= middle ? upper : lower).push_back(v);
    const double top = high > low ? mode(upper, true).value_or(high) : high;
    const double base = high > low ? mode(lower, false).value_or(low) : low;
    set(r, Measure::Top, top);
    set(r, Measure::Base, base);
    const double amplitude = top - base;
    set(r, Measure::Amplitude, amplitude);
    if (!(amplitude > 0.0) || !(sampleInterval > 0.0f))
        return r; // a DC level, or no time base: no edges to time
    set(r, Measure::Overshoot, (high - top) / amplitude * 100.0);

    const double dt = sampleInterval;
    const double mid = (top + base) / 2.0;
    const std::vector<Crossing> cs = crossings(volts, mid, amplitude / 10.0);
    auto spacing = [&cs](bool rising) -> std::optional<double> {
        std::vector<double> ats;
        for (const Crossing& c : cs) {
            if (c.rising == rising)
                ats.push_back(c.at);
        }
        if (ats.size() < 2)
            return std::nullopt;
        return (ats.back() - ats.front()) / static_cast<double>(ats.size() - 1);
    };
    std::optional<double> period = spacing(true);
    if (!period)
        period = spacing(false);
    if (period) {
        set(r, Measure::Period, *period * dt);
        set(r, Measure::Frequency, 1.0 / (*period * dt));
    }
    // Widths: from each crossing to the next one in the other direction.
    double positive = 0.0, negative = 0.0;
    int positives = 0, negatives = 0;
    for (std::size_t i = 1; i < cs.size(); ++i) {
        const double width = cs[i].at - cs[i - 1].at;
        if (cs[i - 1].rising && !cs[i].rising) {
            positive += width;
            ++positives;
        } else if (!cs[i - 1].rising && cs[i].rising) {
            negative += width;
            ++negatives;
        }
    }
    if (positives > 0)
        set(r, Measure::PositiveWidth, positive / positives * dt);
    if (negatives > 0)
        set(r, Measure::NegativeWidth, negative / negatives * dt);
    if (positives > 0 && period)
        set(r, Measure::DutyCycle, positive / positives / *period * 100.0);

    const double ten = base + amplitude * 0.1;
    const double ninety = base + amplitude * 0.9;
    if (const auto rise = edgeTime(volts, ten, ninety))
        set(r, Measure::RiseTime, *rise * dt);
    if (const auto fall = edgeTime(volts, ninety, ten))
        set(r, Measure::FallTime, *fall * dt);
    return r;
}

void MeasureStatistics::add(std::optional<double> value) {
    current = value;
    if (!value)
        return;
    const double x = *value;
    ++count;
    if (count == 1) {
        minimum = maximum = mean = x;
        m2_ = 0.0;
    } else {
        minimum = std::min(minimum, x);
        maximum = std::max(maximum, x);
        const double delta = x - mean;
        mean += delta / static_cast<double>(count);
        m2_ += delta * (x - mean);
    }
    standardDeviation = std::sqrt(m2_ / static_cast<double>(count));
}

std::string formatMeasure(std::optional<double> value, const char* unit) {
    if (!value || !std::isfinite(*value))
        return "\u2014";
    const std::string u = unit;
    double v = *value;
    if (u == "%")
        return fixed(v, 1) + " %";
    static constexpr struct {
        double scale;
        const char* prefix;
    } prefixes[] = {{1e9, "G"},  {1e6, "M"},       {1e3, "k"},  {1.0, ""},
                    {1e-3, "m"}, {1e-6, "\u00b5"}, {1e-9, "n"}, {1e-12, "p"}};
    const double magnitude = std::fabs(v);
    const auto* chosen = &prefixes[3];
    if (magnitude > 0.0) {
        chosen = &prefixes[7];
        for (const auto& p : prefixes) {
            // Rounded to four significant digits first, so 999.96 mV reads "1.000 V".
            if (magnitude * (1.0 + 5e-5) >= p.scale) {
                chosen = &p;
                break;
            }
        }
    }
    v /= chosen->scale;
    // Four significant digits: as many decimals as leave the rounded value under 10, 100, 1000.
    const double a = std::fabs(v);
    int decimals = 0;
    for (int d = 3; d >= 1; --d) {
        const double limit = std::pow(10.0, 4 - d);
        if (std::round(a * std::pow(10.0, d)) < limit * std::pow(10.0, d)) {
            decimals = d;
            break;
        }
    }
    return fixed(v, decimals) + " " + chosen->prefix + unit;
}

} // namespace zorvik
