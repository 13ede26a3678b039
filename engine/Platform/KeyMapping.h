// SDL's keyboard (and mouse-button) state seen through Windows virtual-key codes, the code space the
// engine's keyboard and scripts use. Main thread only; reads whatever SDL's last event pump left,
// so it never pumps events itself. The mapping is by key position (scancode), US layout names.
#pragma once

#include <cstdint>

namespace grindle::platform {

inline constexpr int kKeyStateBytes = 256;

// Fills the bytes as GetKeyboardState would: 0x80 while a key is down, the low bit set while a
// lock key (Caps, Num, Scroll) is on; generic Shift/Control/Alt follow either side; codes 1, 2, 4,
// 5, 6 carry the mouse buttons left, right, middle, X1, X2.
void GetKeyboardState(uint8_t (&state)[kKeyStateBytes]);

}  // namespace grindle::platform
