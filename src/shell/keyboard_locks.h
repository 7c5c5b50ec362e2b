#pragma once

namespace velmora {

/// Which lock keys are on. Where the window system does not tell, none is.
struct KeyboardLocks {
    bool caps = false;
    bool num = false;
    bool scroll = false;
};

KeyboardLocks keyboardLocks();

} // namespace velmora
