#pragma once

#include "Command.h"
#include "MouseMode.h"

namespace velmora {

class VelmoraView;

/// One command of the view: its row, and what the view adds to it.
struct ViewCommand {
    Command row;
    void (*run)(VelmoraView&) = nullptr;
    MouseMode mode = ModeNone;                     ///< of a command that gives the left button a mode: which one
    bool (*off)(const VelmoraView&) = nullptr;     ///< true when the view's state turns it off, beside the row's rule
    bool (*checked)(const VelmoraView&) = nullptr; ///< of a command that switches something: whether that is on
};

} // namespace velmora
