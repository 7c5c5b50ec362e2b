#pragma once

#include <initializer_list>
#include <vector>

#include "UserInterface.h"

namespace velmora {

/// The types that Open offers, in its order.
const std::vector<FileType>& modelFileTypes();

/// The types that all other choosers are made of. With " Files (*.", its extension and ")" behind it the name of a type
/// is what the chooser shows.
const std::vector<FileType>& singleFileTypes();

/// Those of them with the given extensions, in the order of the arguments; each must be among them.
std::vector<FileType> fileTypesNamed(std::initializer_list<const char*> extensions);

/// The types that Import offers as far as the program is built with their readers, and those of Export: for a grid, and
/// for anything else.
const std::vector<FileType>& importFileTypes();
const std::vector<FileType>& exportFileTypes();
const std::vector<FileType>& exportTriangleFileTypes();

/// The ".dat" of a model with field values.
const FileType& flowFieldType();

} // namespace velmora
