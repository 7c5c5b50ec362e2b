#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// Text for a terminal. What is in it may be a file's name, in which any byte can stand: control characters, which a
/// terminal would obey, and bytes that are no UTF-8 are written as "\x1b" and the like. Tabs stay, and line ends where
/// they are wanted.
std::string visibleText(std::string_view text, bool keepLineEnds = false);

/// The same of JSON, in which the characters that it can hold without an escape become "\u009b" and the like: the value
/// stays what it is.
std::string visibleJson(std::string_view json);

} // namespace velmora
