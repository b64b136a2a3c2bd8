// The coupled input of the virtual probe and its trigger crossings.
#include "probe/Waveform.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zorvik {

Waveform::Waveform(const SignalSettings& signal, Coupling coupling)
    : m_shape(signal.shape), m_frequency(signal.frequency),
      m_amplitude(std::max(0.0, signal.amplitude)), m_centre(signal.offset) {
    const bool periodicShape =
        m_shape == Shape::Sine || m_shape == Shape::Square || m_shape == Shape::Triangle;
    // A periodic shape at no frequency holds its phase-0 value; a shape of no amplitude, or
    // a DC signal, is a constant level.
    if (periodicShape && !(m_frequency > 0.0 && std::isfinite(m_frequency))) {
        if (m_shape == Shape::Square)
            m_centre += m_amplitude;
        m_shape = Shape::Dc;
    }
    if (m_shape == Shape::Dc || m_amplitude == 0.0) {
        m_shape = Shape::Dc;
        m_amplitude = 0.0;
    }
    switch (coupling) {
    case Coupling::Gnd:
        m_shape = Shape::Dc;
        m_amplitude = 0.0;
        m_centre = 0.0;
        break;
    case Coupling::Ac:
        m_centre = 0.0;
        break;
    case Coupling::Dc:
        break;
    }
}

bool Waveform::isPeriodic() const {
    return m_shape == Shape::Sine || m_shape == Shape::Square || m_shape == Shape::Triangle;
}

double Waveform::phaseAt(double t) const {
    const double cycles = t * m_frequency;
    return cycles - std::floor(cycles);
}

double Waveform::valueAt(double t) const {
    double unit = 0.0;
    switch (m_shape) {
    case Shape::Sine:
        unit = std::sin(2.0 * std::numbers::pi * phaseAt(t));
        break;
    case Shape::Square:
        unit = phaseAt(t) < 0.5 ? 1.0 : -1.0;
        break;
    case Shape::Triangle: {
        const double p = phaseAt(t);
        unit = p < 0.25 ? 4.0 * p : p < 0.75 ? 2.0 - 4.0 * p : 4.0 * p - 4.0;
        break;
    }
    case Shape::Noise:
    case Shape::Dc:
        break;
    }
    return m_centre + m_amplitude * unit;
}

double Waveform::noiseValue(double unit) const {
    return m_centre + m_amplitude * (2.0 * unit - 1.0);
}

bool Waveform::crosses(double level) const {
    return m_shape != Shape::Dc && low() < level && level < high();
}

double Waveform::nextCrossing(double t, double level, bool rising) const {
    const double x = (level - m_centre) / m_amplitude; // within (-1, 1)
    double risingPhase = 0.0;
    switch (m_shape) {
    case Shape::Sine:
        risingPhase = std::asin(x) / (2.0 * std::numbers::pi);
        break;
    case Shape::Triangle:
        risingPhase = x / 4.0;
        break;
    default: // the square rises at phase 0 and falls at half a period, whatever the level
        break;
    }
    // Sine and triangle are symmetric about a quarter period: the falling crossing mirrors
    // the rising one about phase 0.25.
    const double target = rising ? risingPhase : 0.5 - risingPhase;
    double ahead = target - phaseAt(t);
    ahead -= std::floor(ahead);
    return t + ahead / m_frequency;
}

double Waveform::nextPeriodStart(double t) const {
    return std::ceil(t * m_frequency) / m_frequency;
}

} // namespace zorvik
