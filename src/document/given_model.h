#pragma once

#include "PatchList.h"
#include "zRegion.h"

namespace velmora {

class VelmoraDoc;

/// Puts a model that a program made in place of the one that is there, as an edit of it: it keeps its name, with the
/// extension of its new kind, and Undo of patches brings it back. A document without a model gets an untitled one.
/// Every regime is left; field values stay if they still have the model's shape. Either `patches` or the zones of
/// `region` must hold something, with finite numbers and triangles that name nodes that exist.
void takeGivenModel(VelmoraDoc& doc, PatchList&& patches, zRegion_fe&& region);

} // namespace velmora
