#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// Whether a statement of a STEP file holds a number beyond all measure, or none: the library computes with such ones
/// for minutes and more.
bool hasWildNumber(std::string_view text);

/// The text of a STEP file without the statements that hold such numbers, and without all that is made of them, up to
/// the faces: the library fails at what is made of nothing, and leaves out a face that is not there.
std::string withoutWildNumbers(std::string_view text);

} // namespace velmora
