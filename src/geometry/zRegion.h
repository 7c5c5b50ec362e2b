#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "zBlock.h"
#include "zVec.h"

namespace velmora {

/// Structured zones under one title. It lives for one read, conversion or write.
class zRegion final {
public:
    std::string title;
    std::vector<std::unique_ptr<zBlock>> blocks;
    std::array<double, 3> words{}; ///< copied with the region; nothing reads them

    zRegion() = default;
    zRegion(zRegion&&) = default;
    zRegion& operator=(zRegion&&) = default;
    virtual ~zRegion() = default;
};

/// Unstructured zones under one title; the document's unstructured model is one.
class zRegion_fe final {
public:
    std::string title;
    std::vector<std::unique_ptr<zBlock_fe>> blocks;
    std::array<double, 3> words{}; ///< copied with the region; nothing reads them

    zRegion_fe() = default;
    zRegion_fe(zRegion_fe&&) = default;
    zRegion_fe& operator=(zRegion_fe&&) = default;
    virtual ~zRegion_fe() = default;

    /// The values of the fields x, y and z of a node, taken by name. -1 when `block` or `node` is outside of the
    /// region, the zone has fewer than 3 fields or one of the three is not there; else 0. On -1 nothing is written.
    int getNode(std::ptrdiff_t block, std::ptrdiff_t node, double& x, double& y, double& z) const;
    /// The same with writing.
    int setNode(std::ptrdiff_t block, std::ptrdiff_t node, double x, double y, double z);
};

/// A deep copy of one zone: title, fields and connectivity.
std::unique_ptr<zBlock_fe> cloneZone(const zBlock_fe& zone);

/// Puts a deep copy of zone `index` behind the last of `destination`; nothing when there is no such zone.
void copyBlock(const zRegion_fe& source, zRegion_fe& destination, std::ptrdiff_t index);

/// Makes `destination` a deep copy of `source`. With a source that has no zones `destination` stays as it was.
void copyRegion(const zRegion_fe& source, zRegion_fe& destination);

/// Widens the box from `lower` to `upper` by every node of every zone that has coordinates; one that is not a number
/// widens nothing.
void zoneBounds(const zRegion_fe& region, zVec<double>& lower, zVec<double>& upper);

} // namespace velmora
