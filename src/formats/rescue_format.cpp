#include "rescue_format.h"

#include <cstring>
#include <type_traits>

namespace velmora {

namespace {

constexpr std::string_view opening = "Velmora rescue 2\n";
constexpr std::string_view firstOpening = "Velmora rescue 1\n"; ///< of copies that do not know of imported models
static_assert(opening.size() == firstOpening.size());
constexpr std::string_view ending = "\nwhole";
constexpr std::size_t coordinates = 3;

// ---- Writing --------------------------------------------------------------------------------------------------------

class Packer {
public:
    explicit Packer(std::size_t room) { bytes_.reserve(room); }

    template <class Number>
    void number(Number value) {
        static_assert(std::is_arithmetic_v<Number>);
        raw(&value, sizeof value);
    }
    void count(std::size_t value) { number(static_cast<std::uint64_t>(value)); }
    void text(std::string_view value) {
        count(value.size());
        raw(value.data(), value.size());
    }
    template <class Number>
    void numbers(const std::vector<Number>& values) {
        count(values.size());
        raw(values.data(), values.size() * sizeof(Number));
    }
    void points(const PointList& list) {
        count(list.size());
        for (const zVec<double>& p : list) {
            const double values[coordinates] = {p.x, p.y, p.z};
            raw(values, sizeof values);
        }
    }
    void patches(const PatchList& list) {
        count(list.size());
        for (const Patch& patch : list) {
            count(patch.size());
            for (const PointList& section : patch) {
                points(section);
            }
        }
    }
    void raw(const void* data, std::size_t size) {
        if (size > 0) {
            bytes_.append(static_cast<const char*>(data), size);
        }
    }
    std::string take() { return std::move(bytes_); }

private:
    std::string bytes_;
};

std::size_t roomFor(const PatchList& list) {
    std::size_t room = sizeof(std::uint64_t);
    for (const Patch& patch : list) {
        room += (1 + patch.size()) * sizeof(std::uint64_t);
        for (const PointList& section : patch) {
            room += section.size() * coordinates * sizeof(double);
        }
    }
    return room;
}

std::size_t roomFor(const zRegion_fe& region) {
    constexpr std::size_t headers = 256;
    std::size_t room = headers + region.title.size();
    for (const auto& zone : region.blocks) {
        room += headers + zone->title.size() + zone->connectivity.size() * sizeof(std::int32_t);
        for (const auto& variable : zone->variables) {
            room += headers + variable->name.size() + variable->data.size() * sizeof(double);
        }
    }
    return room;
}

void packZones(Packer& out, const zRegion_fe& region) {
    out.text(region.title);
    for (const double word : region.words) {
        out.number(word);
    }
    out.count(region.blocks.size());
    for (const auto& zone : region.blocks) {
        out.text(zone->title);
        out.number(zone->nodeCount);
        out.number(zone->elementCount);
        out.numbers(zone->connectivity);
        out.count(zone->variables.size());
        for (const auto& variable : zone->variables) {
            out.text(variable->name);
            out.numbers(variable->data);
        }
    }
}

// ---- Reading --------------------------------------------------------------------------------------------------------

/// Takes what Packer wrote. A count that the rest of the bytes cannot hold ends it: all that follows is empty.
class Unpacker {
public:
    explicit Unpacker(std::string_view bytes) : rest_(bytes) {}

    bool good() const { return good_; }
    bool atEnd() const { return rest_.empty(); }
    template <class Number>
    Number number() {
        Number value{};
        raw(&value, sizeof value);
        return value;
    }
    /// A count of things of at least `size` bytes each.
    std::size_t count(std::size_t size) {
        const auto value = number<std::uint64_t>();
        good_ = good_ && value <= rest_.size() / size;
        return good_ ? static_cast<std::size_t>(value) : 0;
    }
    std::string text() {
        std::string value(count(1), '\0');
        raw(value.data(), value.size());
        return value;
    }
    template <class Number>
    std::vector<Number> numbers() {
        std::vector<Number> values(count(sizeof(Number)));
        raw(values.data(), values.size() * sizeof(Number));
        return values;
    }
    PatchList patches() {
        PatchList list(count(sizeof(std::uint64_t)));
        for (Patch& patch : list) {
            patch.resize(count(sizeof(std::uint64_t)));
            for (PointList& section : patch) {
                section.resize(count(coordinates * sizeof(double)));
                for (zVec<double>& p : section) {
                    double values[coordinates];
                    raw(values, sizeof values);
                    p = {values[0], values[1], values[2]};
                }
            }
        }
        return list;
    }

private:
    void raw(void* data, std::size_t size) {
        good_ = good_ && size <= rest_.size();
        if (good_ && size > 0) {
            std::memcpy(data, rest_.data(), size);
            rest_.remove_prefix(size);
        }
    }

    std::string_view rest_;
    bool good_ = true;
};

std::unique_ptr<zBlock_fe> unpackZone(Unpacker& in) {
    const std::string title = in.text();
    const auto nodes = in.number<std::int32_t>();
    const auto elements = in.number<std::int32_t>();
    std::vector<std::int32_t> connectivity = in.numbers<std::int32_t>();
    auto zone = std::make_unique<zBlock_fe>(0, 0, 0);
    zone->title = title;
    zone->nodeCount = nodes;
    zone->elementCount = elements;
    zone->connectivitySize = static_cast<std::int32_t>(connectivity.size());
    zone->connectivity = std::move(connectivity);
    const std::size_t variables = in.count(2 * sizeof(std::uint64_t));
    for (std::size_t i = 0; i < variables && in.good(); ++i) {
        const std::string name = in.text();
        std::vector<double> values = in.numbers<double>();
        const auto size = static_cast<std::int32_t>(values.size());
        zone->variables.push_back(std::make_unique<zArray<double>>(size, 1, 1, name, std::move(values)));
    }
    return zone;
}

} // namespace

std::string encodeRescue(std::string_view path, std::string_view title, bool imported, const PatchList& patches,
                         const zRegion_fe& zones, const PatchList& fieldPatches, const RescuedField& field) {
    constexpr std::size_t smallParts = 1024;
    Packer out(smallParts + path.size() + title.size() + field.titleLine.size() + field.variablesLine.size() +
               roomFor(patches) + roomFor(zones) + roomFor(fieldPatches));
    out.raw(opening.data(), opening.size());
    out.text(path);
    out.text(title);
    out.number(static_cast<std::uint8_t>(imported));
    out.patches(patches);
    packZones(out, zones);
    out.patches(fieldPatches);
    out.number(static_cast<std::uint8_t>(field.loaded));
    out.number(static_cast<std::uint8_t>(field.mode));
    out.number(field.count);
    out.text(field.titleLine);
    out.text(field.variablesLine);
    out.raw(ending.data(), ending.size());
    return out.take();
}

std::optional<RescuedModel> decodeRescue(std::string_view bytes) {
    const bool hasImported = bytes.starts_with(opening);
    if (bytes.size() < opening.size() + ending.size() || (!hasImported && !bytes.starts_with(firstOpening)) ||
        bytes.substr(bytes.size() - ending.size()) != ending) {
        return std::nullopt;
    }
    Unpacker in(bytes.substr(opening.size(), bytes.size() - opening.size() - ending.size()));
    RescuedModel model;
    model.path = in.text();
    model.title = in.text();
    model.imported = hasImported && in.number<std::uint8_t>() != 0;
    model.patches = in.patches();
    model.zones.title = in.text();
    for (double& word : model.zones.words) {
        word = in.number<double>();
    }
    const std::size_t zones = in.count(sizeof(std::uint64_t));
    for (std::size_t i = 0; i < zones && in.good(); ++i) {
        model.zones.blocks.push_back(unpackZone(in));
        if (!in.good() || !consistent(*model.zones.blocks.back())) {
            return std::nullopt;
        }
    }
    model.fieldPatches = in.patches();
    model.field.loaded = in.number<std::uint8_t>() != 0;
    model.field.mode = in.number<std::uint8_t>() != 0;
    model.field.count = in.number<std::int32_t>();
    model.field.titleLine = in.text();
    model.field.variablesLine = in.text();
    return in.good() && in.atEnd() ? std::optional(std::move(model)) : std::nullopt;
}

} // namespace velmora
