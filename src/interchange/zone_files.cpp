#include "zone_files.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "characters.h"
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

/// Whether a word of a name would be taken for one of the file.
bool isKeyword(std::string_view word, bool first) {
    static constexpr std::array<std::string_view, 6> keywords{"facet", "solid", "endsolid", "FACET", "SOLID", "vertex"};
    return first ? word == keywords.front() : std::find(keywords.begin(), keywords.end(), word) != keywords.end();
}

} // namespace

void requireFinite(const zRegion& region, const char* unit) {
    requireFiniteZones(region, unit);
}

void requireFinite(const zRegion_fe& region, const char* unit) {
    requireFiniteZones(region, unit);
}

std::string zoneName(const std::string& title, std::size_t number) {
    return title.empty() ? "Zone_" + std::to_string(number) : title;
}

std::string solidName(const std::string& title, std::size_t number) {
    std::string name;
    bool first = true;
    for (auto at = title.begin(); at != title.end();) {
        const auto word = std::find_if_not(at, title.end(), [](char c) { return isSpace(c); });
        const auto end = std::find_if(word, title.end(), [](char c) { return isSpace(c); });
        name.append(at, end);
        name += isKeyword(std::string_view(word, end), first) ? "_" : "";
        first = first && word == end;
        at = end;
    }
    return first ? zoneName({}, number) : name;
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
