// What the zorvik program tells the system about itself before its first window: its name,
// version, desktop entry and icon.
#pragma once

namespace zorvik {

/// Names the application for the system. No display name is set: on Linux that name would be
/// appended to every window title ("Options — Zorvik"), and each window's title is exactly
/// its own text. Every modal window is brought to the front with the focus as it opens.
void setUpApplication();

} // namespace zorvik
