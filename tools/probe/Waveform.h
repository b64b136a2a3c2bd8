// The input as the probe's converter sees it: the signal after the coupling switch, its value
// at any moment, and the moments at which it crosses a trigger level.
#pragma once

#include "probe/ProbeSettings.h"

namespace zorvik {

class Waveform {
public:
    Waveform(const SignalSettings& signal, Coupling coupling);

    Shape shape() const { return m_shape; }
    /// A sine, square or triangle of some frequency and amplitude; everything else is either
    /// noise or a constant level.
    bool isPeriodic() const;
    bool isNoise() const { return m_shape == Shape::Noise; }

    /// Volts at time t (seconds). Noise has no value of its own at a time: this is its centre.
    double valueAt(double t) const;
    /// A noise sample for a uniform number in [0, 1).
    double noiseValue(double unit) const;
    /// The mean of the coupled input: the offset with DC coupling, 0 with AC or GND.
    double mean() const { return m_centre; }
    double low() const { return m_centre - m_amplitude; }
    double high() const { return m_centre + m_amplitude; }
    /// The input passes through `level` on its way up and down. A level that the input only
    /// touches at a peak, or a constant input, is never crossed.
    bool crosses(double level) const;

    /// The first moment at or after t at which a periodic input passes `level` rising (or
    /// falling); the input must cross the level.
    double nextCrossing(double t, double level, bool rising) const;
    /// The first start of a period (phase 0) at or after t, for a periodic input.
    double nextPeriodStart(double t) const;
    /// Seconds per period of a periodic input.
    double period() const { return 1.0 / m_frequency; }

private:
    double phaseAt(double t) const;

    Shape m_shape;
    double m_frequency;
    double m_amplitude;
    double m_centre;
};

} // namespace zorvik
