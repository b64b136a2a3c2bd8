// Values that keep the graph's furniture in step: the side-scale pointers and the X window.
#include "display/GraphFurniture.h"

#include "display/TraceArrays.h"

namespace zorvik {

TrigIndicatorPointers ShowTrigLevel(float sngTrigLevel, float sngChaGain, float sngChaOffset,
                                    bool CWBChaInv, double CWSCHaOffsetValue) {
    double level = static_cast<double>(sngTrigLevel) * static_cast<double>(sngChaGain);
    if (CWBChaInv)
        level = -level;
    level += static_cast<double>(sngChaOffset);
    return {level, CWSCHaOffsetValue};
}

double xAxisMaximum(double minimumAsReadBack) {
    return minimumAsReadBack + kVisibleDivisions;
}

} // namespace zorvik
