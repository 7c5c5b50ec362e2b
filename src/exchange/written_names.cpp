#include "written_names.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "TextScan.h"
#include "characters.h"

namespace velmora {

namespace {

bool isControl(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == 0x7F;
}

} // namespace

std::string onOneLine(std::string_view title) {
    std::string text(trimmed(title));
    std::replace_if(text.begin(), text.end(), isControl, ' ');
    return text;
}

std::string nodeName(std::string_view title) {
    // Bars and round brackets are letters by the language; readers stop at them.
    static constexpr std::string_view others = " \"'#+,.[]\\{}()|";
    constexpr std::array<std::string_view, 13> words = {"DEF",     "EXTERNPROTO", "FALSE",       "IS",   "NULL",
                                                        "PROTO",   "ROUTE",       "TO",          "TRUE", "USE",
                                                        "eventIn", "eventOut",    "exposedField"};
    std::string name(trimmed(title));
    std::replace_if(
        name.begin(), name.end(), [](char c) { return isControl(c) || others.find(c) != std::string_view::npos; }, '_');
    const bool isWord = std::find(words.begin(), words.end(), name) != words.end() || name == "field";
    return !name.empty() && (isWord || isDigit(name[0]) || isSign(name[0])) ? "_" + name : name;
}

std::string cgnsName(std::string_view title) {
    constexpr std::size_t longest = 32;
    std::string name(trimmed(title));
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '/' || static_cast<unsigned char>(c) < ' '; }, '_');
    return name == "." || name == ".." ? std::string() : std::string(trimmed(name.substr(0, longest)));
}

std::string quotedName(std::string_view title) {
    std::string name(title);
    std::replace(name.begin(), name.end(), '"', '\'');
    return name;
}

} // namespace velmora
