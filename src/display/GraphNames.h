// The names of the graph's plots, axis and cursors and of the side scales' pointers: said once
// here, used by every window that addresses them.
#pragma once

#include <array>

namespace zorvik::names {

inline constexpr char kPlotCHa[] = "CHa"; ///< the live trace
inline constexpr char kPlotRef[] = "Ref"; ///< the reference trace
inline constexpr char kXAxis[] = "XAxis";
inline constexpr char kYAxis[] = "YAxis-1";

inline constexpr char kCursor1[] = "Cursor1"; ///< vertical, left of the time pair
inline constexpr char kCursor2[] = "Cursor2"; ///< vertical, right of the time pair
inline constexpr char kCursor3[] = "Cursor3"; ///< horizontal, first of the voltage pair
inline constexpr char kCursor4[] = "Cursor4"; ///< horizontal, second of the voltage pair
inline constexpr std::array<const char*, 4> kCursors{kCursor1, kCursor2, kCursor3, kCursor4};

/// The trigger indicator CWSTrigger's pointer: waiting or triggered.
inline constexpr char kPointer1[] = "Pointer-1";
/// The side scale CWSTrigInd's pointers: the trigger level and where 0 V lies.
inline constexpr char kTrigLvl[] = "TrigLvl";
inline constexpr char kChaZero[] = "CHa_Zero";

} // namespace zorvik::names
