#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "zArray.h"

namespace velmora {

/// The named fields of a zone, in the order of their making.
using ZoneVariables = std::vector<std::unique_ptr<zArray<double>>>;

/// A structured zone of a file: named fields over a grid of imax by jmax by kmax points. A zone made of a patch has
/// imax points in each of jmax sections. (The user's zBlock, a selection of patches, is another thing.)
class zBlock final {
public:
    std::string title;
    std::int32_t imax;
    std::int32_t jmax;
    std::int32_t kmax;
    std::int32_t total; ///< imax * jmax * kmax, 0 when that has no room in 32 bits
    ZoneVariables variables;

    zBlock(std::int32_t imaxValue, std::int32_t jmaxValue, std::int32_t kmaxValue);
    zBlock(const zBlock&) = delete;
    zBlock& operator=(const zBlock&) = delete;
    virtual ~zBlock() = default;

    /// The first field of that name, letters of either case being equal, or null. On a match the zone takes `name`
    /// as its title; a caller that only reads uses `variableNamed`.
    zArray<double>* findVariable(const std::string& name);
    /// The same field; a name that is not there makes a new field of zeros behind the others.
    zArray<double>* addVariable(const std::string& name);
};

/// An unstructured zone: named fields over nodes, and elements that join them.
class zBlock_fe final {
public:
    std::string title;
    std::int32_t nodeCount;
    std::int32_t elementCount;
    std::int32_t connectivitySize;
    /// Node numbers from 0, four entries for each triangle: its three nodes and -1.
    std::vector<std::int32_t> connectivity;
    ZoneVariables variables;

    /// All entries of the connectivity are -1. Negative counts are taken as 0.
    zBlock_fe(std::int32_t nodes, std::int32_t connectivityEntries, std::int32_t elements);
    zBlock_fe(const zBlock_fe&) = delete;
    zBlock_fe& operator=(const zBlock_fe&) = delete;
    virtual ~zBlock_fe() = default;

    /// As zBlock's; fields have nodeCount values.
    zArray<double>* findVariable(const std::string& name);
    zArray<double>* addVariable(const std::string& name);
};

/// The first field of that name (letters of either case being equal) or null; changes nothing.
zArray<double>* variableNamed(const ZoneVariables& variables, const std::string& name);

/// The coordinates of a zone's points for reading; all three null when one of x, y, z is not there.
struct ZoneCoordinates {
    const zArray<double>* x = nullptr;
    const zArray<double>* y = nullptr;
    const zArray<double>* z = nullptr;
    explicit operator bool() const { return x != nullptr; }
};
ZoneCoordinates coordinatesOf(const ZoneVariables& variables);

/// Whether an element's three corners stand in the connectivity and name nodes that exist; `element` counts from 0.
bool elementInRange(const zBlock_fe& zone, std::int32_t element);

/// Whether every one of the zone's triangles names nodes that exist and its arrays are as long as its counts say:
/// what drawing, picking and cutting take for granted of a zone of the model.
bool consistent(const zBlock_fe& zone);

} // namespace velmora
