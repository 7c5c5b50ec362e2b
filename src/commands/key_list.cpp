#include "key_list.h"

#include <algorithm>
#include <string_view>

#include "command_table.h"

namespace velmora {

namespace {

void addTo(std::string& text, std::string_view more) {
    if (!text.empty()) {
        text += " / ";
    }
    text += more;
}

/// A menu text shared by several menus is told with what it is done to, the first part of the id.
std::string wordsOf(const Command& command) {
    const std::string_view id = command.id;
    const std::string_view kind = id.substr(0, id.find('.'));
    const std::string words = plainText(command.menuText);
    return kind == "line" || kind == "point" || kind == "patch" ? words + " (" + std::string(kind) + ")" : words;
}

} // namespace

std::vector<KeyEntry> keyList() {
    std::vector<KeyEntry> keys;
    for (const Command& command : commandTable()) {
        const std::string key = command.accelerator;
        if (key.empty()) {
            continue;
        }
        auto entry = std::find_if(keys.begin(), keys.end(), [&key](const KeyEntry& e) { return e.keys == key; });
        if (entry == keys.end()) {
            entry = keys.insert(keys.end(), {key, {}, {}});
        }
        addTo(entry->act, wordsOf(command));
        addTo(entry->hint, command.statusText);
    }
    keys.push_back({"Escape", "Exit", "In the view: close the program"});
    return keys;
}

std::vector<KeyEntry> mouseActs() {
    return {
        {"Wheel", "Zoom at the mouse, whatever regime or mode is on", {}},
        {"Middle button, drag", "Turn the model; seen from near about what is in the middle of the view", {}},
        {"Shift + middle button, drag", "Shift the picture", {}},
        {"Ctrl + middle button, drag", "Zoom: down enlarges, up shrinks", {}},
        {"Left button", "Capture in a regime; else what the mode of the View menu says", {}},
        {"Right button", "The menu of the regime", {}},
        {"Drop files", "Open them in place of the model", {}},
    };
}

} // namespace velmora
