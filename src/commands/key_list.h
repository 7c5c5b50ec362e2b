#pragma once

#include <string>
#include <vector>

namespace velmora {

/// One line of the list of keys and mouse acts.
struct KeyEntry {
    std::string keys; ///< "Ctrl+S", "Wheel"
    std::string act;  ///< the words of the commands, or what the mouse does
    std::string hint; ///< what the status line says of them; of the mouse empty
};

/// Every key of the command table in its order, each once; commands that share one stand in one line. Escape, which is
/// the view's own, comes last.
std::vector<KeyEntry> keyList();
/// What the mouse does in the view.
std::vector<KeyEntry> mouseActs();

} // namespace velmora
