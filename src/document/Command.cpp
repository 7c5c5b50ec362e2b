#include "Command.h"

namespace velmora {

std::string plainText(std::string_view menuText) {
    std::string text;
    for (std::size_t i = 0; i < menuText.size(); ++i) {
        if (menuText[i] == '&') {
            ++i;
        }
        if (i < menuText.size()) {
            text += menuText[i];
        }
    }
    while (!text.empty() && (text.back() == '.' || text.back() == ' ')) {
        text.pop_back();
    }
    return text;
}

} // namespace velmora
