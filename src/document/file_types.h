#pragma once

#include <initializer_list>
#include <vector>

#include "UserInterface.h"

namespace velmora {

/// The types that Open offers, in its order.
const std::vector<FileType>& modelFileTypes();

/// Those of them with the given extensions, in the order of the arguments; each must be among them.
std::vector<FileType> fileTypesNamed(std::initializer_list<const char*> extensions);

} // namespace velmora
