#include "geometry_print.h"

#include "bit_hash.h"

namespace velmora {

namespace {

class Printer {
public:
    void add(double number) { hash_ = hashedWith(hash_, number); }
    void addCount(std::size_t count) { hash_ = mixedBits(hash_ + count); }
    void addAll(const std::vector<double>& numbers) {
        addCount(numbers.size());
        for (const double number : numbers) {
            add(number);
        }
    }
    std::uint64_t value() const { return hash_; }

private:
    std::uint64_t hash_ = 1;
};

void addPatch(const Patch& patch, Printer& printer) {
    printer.addCount(patch.size());
    for (const PointList& section : patch) {
        printer.addCount(section.size());
        for (const zVec<double>& point : section) {
            printer.add(point.x);
            printer.add(point.y);
            printer.add(point.z);
        }
    }
}

void addZone(const zBlock_fe& zone, Printer& printer) {
    if (const ZoneCoordinates at = coordinatesOf(zone.variables)) {
        for (const zArray<double>* const field : {at.x, at.y, at.z}) {
            printer.addAll(field->data);
        }
    }
    printer.addCount(zone.connectivity.size());
    for (const std::int32_t node : zone.connectivity) {
        printer.addCount(static_cast<std::size_t>(node));
    }
}

} // namespace

std::uint64_t geometryPrint(const PatchList& patches, const zRegion_fe& region) {
    Printer printer;
    printer.addCount(patches.size());
    for (const Patch& patch : patches) {
        addPatch(patch, printer);
    }
    printer.addCount(region.blocks.size());
    for (const auto& zone : region.blocks) {
        addZone(*zone, printer);
    }
    return printer.value();
}

} // namespace velmora
