#include "Command.h"

#include "VelmoraDoc.h"

namespace velmora {

void CommandRun::operator()(VelmoraDoc& document) const {
    if (function_ != nullptr) {
        function_(document);
    } else {
        (document.*method_)();
    }
}

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
