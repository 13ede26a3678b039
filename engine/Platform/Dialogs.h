// Message boxes and the cursor. A box is shown only where a display exists; headless runs (no
// DISPLAY/WAYLAND_DISPLAY, or SDL's offscreen/dummy driver) write the caption and text to standard
// error instead, so nothing ever blocks waiting for a click nobody can give.
#pragma once

namespace grindle::platform {

bool HasDisplay();
void ShowMessageBox(const char* caption, const char* text);
void ShowCursor();

}  // namespace grindle::platform
