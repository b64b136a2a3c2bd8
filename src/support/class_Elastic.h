// Elastic form layout: records where every control of a form sits at start-up and, on each
// later resize, moves, sizes and re-fonts the controls in proportion to the form's new size.
#pragma once

#include "support/ElasticForm.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace zorvik {

class class_Elastic {
public:
    /// Records the form's design geometry: every control's position, size, font size and right
    /// margin (a line's end points instead), each held as a 16-bit whole number of twips or
    /// points. A form that is maximised, or any form when nWindState is given (its value is not
    /// looked at), is first sized to the screen, so the screen becomes its design size.
    void Init(ElasticForm& frm, std::optional<int> nWindState = std::nullopt);

    /// Lays the form out for its current size. The first call after Init changes nothing.
    void FormResize(ElasticForm& frm);

    /// What Init recorded, for inspection.
    int designHeight() const { return m_designHeight; }
    int designWidth() const { return m_designWidth; }
    int lastIndex() const { return m_lastIndex; }
    bool justInitialised() const { return m_justInitialised; }
    int storedTop(int index) const { return m_top.at(static_cast<std::size_t>(index)); }
    int storedLeft(int index) const { return m_left.at(static_cast<std::size_t>(index)); }
    int storedHeight(int index) const { return m_height.at(static_cast<std::size_t>(index)); }
    int storedWidth(int index) const { return m_width.at(static_cast<std::size_t>(index)); }
    int storedFontSize(int index) const { return m_fontSize.at(static_cast<std::size_t>(index)); }
    int storedRightMargin(int index) const {
        return m_rightMargin.at(static_cast<std::size_t>(index));
    }

    /// A value as a 16-bit whole number: rounded to the nearest, halves to the even neighbour.
    /// Throws std::overflow_error outside -32768 ... 32767 (or for a value that is not finite).
    static std::int16_t toInteger(double value);

    /// The new font size for an unrounded scaled size s: Int(s) + (Round(s) mod 2), where Int
    /// is the floor and Round rounds to the nearest whole number, halves to even. So 8.6 gives
    /// 9, 9.2 gives 10 and 8.3 gives 8. This deliberately favours even sizes near a half.
    static double scaledFontSize(double s);

private:
    using Store = std::vector<std::int16_t>;

    std::int16_t m_designHeight = 0;
    std::int16_t m_designWidth = 0;
    // Index of the last managed control; -1 until Init has seen a form.
    std::int16_t m_lastIndex = -1;
    Store m_top;
    Store m_left;
    Store m_height;
    Store m_width;
    Store m_fontSize;
    Store m_rightMargin;
    bool m_justInitialised = false;
};

} // namespace zorvik
