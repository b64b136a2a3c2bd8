// Values that keep the graph's furniture in step: the side-scale pointers and the X window.
#pragma once

namespace zorvik {

/// Values of the two pointers of the side scale CWSTrigInd, in divisions like the graph's Y.
struct TrigIndicatorPointers {
    double TrigLvl;  ///< where the trigger level lies on the screen
    double CHa_Zero; ///< where 0 V lies: the offset slide's value

    friend bool operator==(const TrigIndicatorPointers&, const TrigIndicatorPointers&) = default;
};

/// "TrigLvl" = trigger level x gain, negated when inverted, plus the offset, worked out in
/// double precision like the trace points, so it sits on the trace where the trace crosses
/// the trigger level. "CHa_Zero" is the offset slide's value and does not flip with the
/// trace: inversion mirrors about the zero line.
TrigIndicatorPointers ShowTrigLevel(float sngTrigLevel, float sngChaGain, float sngChaOffset,
                                    bool CWBChaInv, double CWSCHaOffsetValue);

/// Minimum and maximum of the axis "XAxis".
struct XAxisRange {
    double minimum;
    double maximum;

    friend bool operator==(const XAxisRange&, const XAxisRange&) = default;
};

/// The right edge of the 10-division window whose left edge the axis reports. The window
/// passes the minimum as the axis reads it back, so the window stays exactly 10 divisions
/// wide even when the axis adjusts the value it was given.
double xAxisMaximum(double minimumAsReadBack);

} // namespace zorvik
