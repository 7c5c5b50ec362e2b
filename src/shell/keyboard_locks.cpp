#include "keyboard_locks.h"

#ifdef VELMORA_HAS_X11
#include <QGuiApplication>
// Xlib defines common words as macros: nothing of Qt may follow it.
#include <X11/XKBlib.h>
#endif

namespace velmora {

#ifdef VELMORA_HAS_X11

namespace {

bool indicatorOn(Display* display, const char* name) {
    int on = 0;
    const Atom indicator = XInternAtom(display, name, 1);
    return indicator != 0 && XkbGetNamedIndicator(display, indicator, nullptr, &on, nullptr, nullptr) != 0 && on != 0;
}

} // namespace

KeyboardLocks keyboardLocks() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // The off-screen platform offers the interface too, without a display behind it.
    Display* display = x11 != nullptr ? x11->display() : nullptr;
    if (display == nullptr) {
        return {};
    }
    return {indicatorOn(display, "Caps Lock"), indicatorOn(display, "Num Lock"), indicatorOn(display, "Scroll Lock")};
}

#else

KeyboardLocks keyboardLocks() {
    return {};
}

#endif

} // namespace velmora
