#include "script_file.h"

#include <istream>
#include <string_view>

namespace velmora {

bool readScriptLine(std::istream& script, std::int64_t number, std::string& line) {
    constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
    if (!std::getline(script, line)) {
        return false;
    }
    if (number == 1 && line.starts_with(byteOrderMark)) {
        line.erase(0, byteOrderMark.size());
    }
    return true;
}

} // namespace velmora
