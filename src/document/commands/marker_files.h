#pragma once

#include "PatchList.h"

namespace velmora {

class UserInterface;
struct FileRequest;

/// The points of the file that the user chooses; none for Cancel, and for a file that cannot be opened.
PointList readChosenPoints(UserInterface& ui, const FileRequest& request);

} // namespace velmora
