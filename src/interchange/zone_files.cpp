#include "zone_files.h"

#include <algorithm>
#include <cmath>

#include "zExceptions.h"

namespace velmora {

namespace {

template <class Region>
void requireFiniteZones(const Region& region, const char* unit) {
    for (std::size_t zone = 0; zone < region.blocks.size(); ++zone) {
        for (const auto& variable : region.blocks[zone]->variables) {
            const auto& data = variable->data;
            const auto value = std::find_if_not(data.begin(), data.end(), [](double x) { return std::isfinite(x); });
            if (value != data.end()) {
                throw ValueError(unit, __LINE__,
                                 "Zone " + std::to_string(zone + 1) + ", node " +
                                     std::to_string(value - data.begin() + 1) + ", " + variable->name +
                                     ": the number is not finite, and could not be read again");
            }
        }
    }
}

} // namespace

void requireFinite(const zRegion& region, const char* unit) {
    requireFiniteZones(region, unit);
}

void requireFinite(const zRegion_fe& region, const char* unit) {
    requireFiniteZones(region, unit);
}

WriteOutcome outcomeOf(const SafeFile& file, const std::filesystem::path& path, const char* format) {
    WriteOutcome outcome;
    outcome.written = true;
    outcome.notes = file.notes();
    outcome.record.path = path;
    outcome.record.bytes = file.size();
    outcome.record.format = format;
    return outcome;
}

} // namespace velmora
