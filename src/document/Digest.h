#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "PatchList.h"
#include "zRegion.h"

namespace velmora {

/// Takes in values one by one; the order counts.
class Digest {
public:
    std::uint64_t value() const { return value_; }

    void add(std::uint64_t number) {
        constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;
        constexpr int turn = 29;
        value_ = std::rotl((value_ ^ number) * factor, turn);
    }
    void add(bool flag) { add(std::uint64_t{flag ? 1U : 0U}); }
    void add(std::int32_t number) { add(static_cast<std::uint64_t>(static_cast<std::uint32_t>(number))); }
    void add(double number) { add(std::bit_cast<std::uint64_t>(number)); }
    void add(const std::string& text) {
        add(std::uint64_t{text.size()});
        for (const char letter : text) {
            add(static_cast<std::uint64_t>(static_cast<unsigned char>(letter)));
        }
    }
    void add(const zVec<double>& point) {
        add(point.x);
        add(point.y);
        add(point.z);
    }
    template <class Item>
    void add(const std::vector<Item>& list) {
        add(std::uint64_t{list.size()});
        for (const auto& item : list) {
            add(item);
        }
    }
    void add(const zRegion_fe& region) {
        add(region.title);
        add(std::uint64_t{region.blocks.size()});
        for (const auto& zone : region.blocks) {
            add(zone->title);
            add(zone->connectivity);
            add(std::uint64_t{zone->variables.size()});
            for (const auto& variable : zone->variables) {
                add(*variable);
            }
        }
    }
    void add(const zArray<double>& values) {
        add(values.name);
        add(values.data);
    }

private:
    std::uint64_t value_ = 0;
};

/// What tells two models apart.
inline std::uint64_t geometryDigest(const PatchList& patches, const zRegion_fe& region) {
    Digest digest;
    digest.add(patches);
    digest.add(region);
    return digest.value();
}

} // namespace velmora
