#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// On one line, for formats that end a name there: OBJ and text STL.
std::string onOneLine(std::string_view title);

/// What may stand behind DEF in VRML: no white space, quotes, brackets, commas, points, bars; no digit or sign first;
/// no word of the language.
std::string nodeName(std::string_view title);

/// A name in CGNS: 32 letters at most, without a slash; empty where nothing is left of it.
std::string cgnsName(std::string_view title);

/// A name in the quotes of Tecplot, where another quote would end it.
std::string quotedName(std::string_view title);

} // namespace velmora
