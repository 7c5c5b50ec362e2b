#pragma once

#include <array>
#include <bit>
#include <cstddef>
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

    void add(std::uint64_t number) { take(value_, number); }
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
    void add(const std::vector<double>& list) { addSideBySide(list); }
    void add(const std::vector<std::int32_t>& list) { addSideBySide(list); }
    void add(const PointList& list) {
        add(std::uint64_t{list.size()});
        std::array<std::uint64_t, 3> lanes = {value_, value_ + 1, value_ + 2};
        for (const zVec<double>& point : list) {
            take(lanes[0], std::bit_cast<std::uint64_t>(point.x));
            take(lanes[1], std::bit_cast<std::uint64_t>(point.y));
            take(lanes[2], std::bit_cast<std::uint64_t>(point.z));
        }
        addLanes(lanes);
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
            add(*zone);
        }
    }
    void add(const zBlock_fe& zone) {
        add(zone.title);
        add(zone.connectivity);
        add(std::uint64_t{zone.variables.size()});
        for (const auto& variable : zone.variables) {
            add(*variable);
        }
    }
    void add(const zArray<double>& values) {
        add(values.name);
        add(values.data);
    }

private:
    static void take(std::uint64_t& value, std::uint64_t number) {
        constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;
        constexpr int turn = 29;
        value = std::rotl((value ^ number) * factor, turn);
    }
    static std::uint64_t bitsOf(double number) { return std::bit_cast<std::uint64_t>(number); }
    static std::uint64_t bitsOf(std::int32_t number) { return static_cast<std::uint32_t>(number); }

    /// A step waits for the one before: long lists go in four lanes, each with every fourth number.
    template <class Number>
    void addSideBySide(const std::vector<Number>& list) {
        constexpr std::size_t width = 4;
        add(std::uint64_t{list.size()});
        std::array<std::uint64_t, width> lanes = {value_, value_ + 1, value_ + 2, value_ + 3};
        std::size_t i = 0;
        for (; i + width <= list.size(); i += width) {
            for (std::size_t lane = 0; lane < width; ++lane) {
                take(lanes[lane], bitsOf(list[i + lane]));
            }
        }
        for (; i < list.size(); ++i) {
            take(lanes[i % width], bitsOf(list[i]));
        }
        addLanes(lanes);
    }
    template <std::size_t width>
    void addLanes(const std::array<std::uint64_t, width>& lanes) {
        for (const std::uint64_t lane : lanes) {
            add(lane);
        }
    }

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
