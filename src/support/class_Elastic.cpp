// Elastic form layout: the recording of the design geometry and the proportional re-layout.
#include "support/class_Elastic.h"

#include <cmath>
#include <cstddef>
#include <exception>
#include <limits>
#include <stdexcept>

namespace zorvik {

namespace {

// Runs one step of the layout. A step that fails (a property the control does not have, a
// value it refuses, a number that does not fit) is skipped and the layout goes on with the
// next one; the layout never reports an error.
template <class Step> void attempt(Step&& step) {
    try {
        step();
    } catch (const std::exception&) {
    }
}

// Floating division that fails instead of giving an infinity or a NaN.
double divide(double numerator, double denominator) {
    if (denominator == 0.0)
        throw std::domain_error(numerator == 0.0 ? "Overflow" : "Division by zero");
    return numerator / denominator;
}

// Int: the largest whole number not greater than the value.
double floorOf(double value) {
    if (!std::isfinite(value))
        throw std::overflow_error("Overflow");
    return std::floor(value);
}

// Round to the nearest whole number, halves to the even neighbour.
double roundHalfEven(double value) {
    if (!std::isfinite(value))
        throw std::overflow_error("Overflow");
    const double lower = std::floor(value);
    const double fraction = value - lower;
    if (fraction > 0.5)
        return lower + 1.0;
    if (fraction < 0.5)
        return lower;
    return std::fmod(lower, 2.0) == 0.0 ? lower : lower + 1.0;
}

std::size_t slot(int index) {
    return static_cast<std::size_t>(index);
}

} // namespace

std::int16_t class_Elastic::toInteger(double value) {
    const double rounded = roundHalfEven(value);
    if (rounded < std::numeric_limits<std::int16_t>::min() ||
        rounded > std::numeric_limits<std::int16_t>::max())
        throw std::overflow_error("Overflow");
    return static_cast<std::int16_t>(rounded);
}

double class_Elastic::scaledFontSize(double s) {
    const double rounded = roundHalfEven(s);
    // The remainder is taken on 32-bit whole numbers, with the sign of the dividend.
    if (rounded < std::numeric_limits<std::int32_t>::min() ||
        rounded > std::numeric_limits<std::int32_t>::max())
        throw std::overflow_error("Overflow");
    const auto parity = static_cast<std::int32_t>(rounded) % 2;
    return floorOf(s) + parity;
}

void class_Elastic::Init(ElasticForm& frm, std::optional<int> nWindState) {
    attempt([&] { m_lastIndex = toInteger(frm.controlCount() - 1.0); });
    const auto size = slot(m_lastIndex + 1);
    for (Store* store : {&m_top, &m_left, &m_height, &m_width, &m_fontSize, &m_rightMargin})
        store->assign(size, 0);

    for (int i = 0; i <= m_lastIndex; ++i) {
        const auto s = slot(i);
        bool line = false;
        attempt([&] { line = frm.isLine(i); });
        if (line) {
            attempt([&] { m_top[s] = toInteger(frm.property(i, ElasticProperty::Y1)); });
            attempt([&] { m_left[s] = toInteger(frm.property(i, ElasticProperty::X1)); });
            attempt([&] { m_height[s] = toInteger(frm.property(i, ElasticProperty::Y2)); });
            attempt([&] { m_width[s] = toInteger(frm.property(i, ElasticProperty::X2)); });
        } else {
            attempt([&] { m_top[s] = toInteger(frm.property(i, ElasticProperty::Top)); });
            attempt([&] { m_left[s] = toInteger(frm.property(i, ElasticProperty::Left)); });
            attempt([&] { m_height[s] = toInteger(frm.property(i, ElasticProperty::Height)); });
            attempt([&] { m_width[s] = toInteger(frm.property(i, ElasticProperty::Width)); });
            attempt([&] { m_fontSize[s] = toInteger(frm.property(i, ElasticProperty::FontSize)); });
            attempt([&] {
                m_rightMargin[s] = toInteger(frm.property(i, ElasticProperty::RightMargin));
            });
        }
    }

    bool maximised = false;
    attempt([&] { maximised = frm.windowState() == ElasticWindowState::Maximized; });
    if (maximised || nWindState.has_value()) {
        attempt([&] { frm.setFormHeight(frm.screenHeight()); });
        attempt([&] { frm.setFormWidth(frm.screenWidth()); });
    }

    attempt([&] { m_designHeight = toInteger(frm.formHeight()); });
    attempt([&] { m_designWidth = toInteger(frm.formWidth()); });
    m_justInitialised = true;
}

void class_Elastic::FormResize(ElasticForm& frm) {
    // The form keeps its picture from now on; the earlier setting is not put back.
    attempt([&] { static_cast<void>(frm.autoRedraw()); });
    attempt([&] { frm.setAutoRedraw(true); });

    // The first call after Init is swallowed: the main window makes it at the end of its
    // start-up, when every control still stands where it was designed.
    if (m_justInitialised) {
        m_justInitialised = false;
        return;
    }

    // Never smaller than half the design size, each direction on its own.
    attempt([&] {
        if (frm.formHeight() < m_designHeight / 2.0)
            frm.setFormHeight(m_designHeight / 2.0);
    });
    attempt([&] {
        if (frm.formWidth() < m_designWidth / 2.0)
            frm.setFormWidth(m_designWidth / 2.0);
    });

    // Design size over current size. The 400 twips taken off the heights allow for the caption
    // and the borders; the widths are compared whole. When a factor cannot be formed, every
    // step that needs it is skipped.
    std::optional<double> heightFactor;
    std::optional<double> widthFactor;
    attempt([&] { heightFactor = divide(m_designHeight - 400.0, frm.formHeight() - 400.0); });
    attempt([&] { widthFactor = divide(m_designWidth, frm.formWidth()); });
    const auto byHeight = [&](int stored) { return floorOf(divide(stored, heightFactor.value())); };
    const auto byWidth = [&](int stored) { return floorOf(divide(stored, widthFactor.value())); };

    for (int i = 0; i <= m_lastIndex; ++i) {
        const auto s = slot(i);
        bool line = false;
        attempt([&] { line = frm.isLine(i); });
        if (line) {
            attempt([&] { frm.setProperty(i, ElasticProperty::Y1, byHeight(m_top.at(s))); });
            attempt([&] { frm.setProperty(i, ElasticProperty::X1, byWidth(m_left.at(s))); });
            attempt([&] { frm.setProperty(i, ElasticProperty::Y2, byHeight(m_height.at(s))); });
            attempt([&] { frm.setProperty(i, ElasticProperty::X2, byWidth(m_width.at(s))); });
            continue; // a line has neither a font nor a right margin
        }
        attempt([&] { frm.setProperty(i, ElasticProperty::Top, byHeight(m_top.at(s))); });
        attempt([&] { frm.setProperty(i, ElasticProperty::Left, byWidth(m_left.at(s))); });
        attempt([&] { frm.setProperty(i, ElasticProperty::Height, byHeight(m_height.at(s))); });
        attempt([&] { frm.setProperty(i, ElasticProperty::Width, byWidth(m_width.at(s))); });
        attempt([&] {
            const double scaled = divide(m_fontSize.at(s), widthFactor.value());
            frm.setProperty(i, ElasticProperty::FontSize, scaledFontSize(scaled));
        });
        // The right margin is scaled by the height factor, not the width factor, on purpose.
        attempt([&] {
            frm.setProperty(i, ElasticProperty::RightMargin, byHeight(m_rightMargin.at(s)));
        });
    }
}

} // namespace zorvik
