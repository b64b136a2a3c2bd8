// Gives screen readers and other assistive technology access to the front-panel widgets.
#pragma once

namespace zorvik {

/// Installs, once, the factory that describes the panel widgets to assistive technology: knobs
/// as dials and slides as sliders (with their values), indicators as read-only sliders, lit
/// buttons as checkable buttons, lamps as indicators and the graph as a chart. Every panel
/// widget calls it when it is built, so nothing else needs to.
void installPanelAccessibility();

} // namespace zorvik
