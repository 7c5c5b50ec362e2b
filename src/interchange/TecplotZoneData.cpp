#include "TecplotZoneData.h"

#include <algorithm>
#include <limits>
#include <type_traits>
#include <utility>

#include "large_memory.h"
#include "tecplot_unit.h"
#include "zExceptions.h"

namespace velmora {

namespace {

constexpr std::int64_t int32Max = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t entriesPerTriangle = 4;

// The points of a grid, or a number out of the range of 32 bits when there are too many.
std::int64_t pointCount(const TecplotZoneHeader& zone) {
    if (zone.i == 0 || zone.j == 0 || zone.k == 0) {
        return 0;
    }
    const std::int64_t layer = std::int64_t{zone.i} * zone.j;
    return layer > int32Max ? layer : layer * zone.k;
}

std::int32_t cornersPerElement(TecplotZoneType type) {
    switch (type) {
    case TecplotZoneType::Ordered:
        return 0;
    case TecplotZoneType::LineSegments:
        return 2;
    case TecplotZoneType::Triangles:
        return 3;
    case TecplotZoneType::Quadrilaterals:
    case TecplotZoneType::Tetrahedra:
        return 4;
    case TecplotZoneType::Bricks:
        return 8;
    }
    return 0;
}

// Corners count from 1, the connectivity from 0. Of a quadrilateral's two triangles the first has an end mark as well.
void appendElement(const std::vector<std::int32_t>& corners, std::vector<std::int32_t>& connectivity) {
    connectivity.insert(connectivity.end(), {corners[0] - 1, corners[1] - 1, corners[2] - 1, -1});
    if (corners.size() > 3) {
        connectivity.insert(connectivity.end(), {corners[2] - 1, corners[3] - 1, corners[0] - 1, -1});
    }
}

/// Takes rows of numbers: lines at once where each row has one of its own, as in nearly all files.
template <class Number>
class RowReader {
public:
    RowReader(TextStream& stream, std::size_t width) : stream_(stream), width_(width), numbers_(width * rowsAtOnce) {}

    /// How many of the next rows stand in `numbers`, `left` of them at most; 0 when a number cannot be read.
    std::size_t next(std::int64_t left) {
        const auto most = static_cast<std::size_t>(std::min<std::int64_t>(left, rowsAtOnce));
        const bool lines = othersInARow_ < mostOthers;
        if (const std::size_t taken = lines && stream_.skipSpace() ? takeLines(most) : 0; taken > 0) {
            othersInARow_ = 0;
            return taken;
        }
        othersInARow_ += lines ? 1 : 0;
        if (!lines) {
            return readAtOnce(most * width_) ? most : 0;
        }
        std::size_t taken = 0;
        while (taken < width_ && readOne(numbers_[taken])) {
            ++taken;
        }
        return taken == width_ ? 1 : 0;
    }
    const Number* numbers() const { return numbers_.data(); }

private:
    static constexpr std::size_t rowsAtOnce = 64;
    /// Rows without lines of their own, one behind the other, after which lines are not looked for any more.
    static constexpr int mostOthers = 8;

    std::size_t takeLines(std::size_t most) {
        if constexpr (std::is_integral_v<Number>) {
            return stream_.takeLinesOfInts(numbers_.data(), width_, most);
        } else {
            return stream_.takeLinesOfDoubles(numbers_.data(), width_, most);
        }
    }
    bool readOne(double& number) { return stream_.readDouble(number); }
    bool readOne(std::int32_t& number) { return stream_.readInt(number); }
    bool readAtOnce(std::size_t count) {
        if constexpr (std::is_integral_v<Number>) {
            return stream_.readInts(numbers_.data(), count);
        } else {
            return stream_.readDoubles(numbers_.data(), count);
        }
    }

    TextStream& stream_;
    std::size_t width_;
    std::vector<Number> numbers_;
    int othersInARow_ = 0;
};

} // namespace

std::unique_ptr<zBlock> TecplotZoneData::readOrdered(std::int64_t zoneStart) {
    zoneStart_ = zoneStart;
    const TecplotZoneHeader& header = header_.zone;
    const std::int64_t points = pointCount(header);
    if (points > int32Max) {
        raise(__LINE__);
    }
    std::vector<Field> fields = readFields(points);
    if (header.i < 2 || header.j < 2) {
        return nullptr;
    }
    auto zone = std::make_unique<zBlock>(header.i, header.j, header.k);
    zone->title = zoneTitle();
    for (Field& field : fields) {
        zone->variables.push_back(std::make_unique<zArray<double>>(
            header.i, header.j, header.k, header_.variables[field.name], std::move(field.values)));
    }
    return zone;
}

std::unique_ptr<zBlock_fe> TecplotZoneData::readTriangles(std::int64_t zoneStart) {
    zoneStart_ = zoneStart;
    const TecplotZoneHeader& header = header_.zone;
    const std::int64_t trianglesEach = header.type == TecplotZoneType::Quadrilaterals ? 2 : 1;
    const std::int64_t triangles = header.elements * trianglesEach;
    if (triangles * entriesPerTriangle > int32Max) {
        raise(__LINE__);
    }
    if (header_.variables.empty()) {
        throw ParseError(tecplotUnit, __LINE__, missingCoordinates({}));
    }
    std::vector<Field> fields = readFields(header.nodes);
    std::vector<std::int32_t> connectivity = readElements();
    auto zone = std::make_unique<zBlock_fe>(header.nodes, 0, static_cast<std::int32_t>(triangles));
    zone->title = zoneTitle();
    zone->connectivitySize = static_cast<std::int32_t>(connectivity.size());
    zone->connectivity = std::move(connectivity);
    for (Field& field : fields) {
        zone->variables.push_back(std::make_unique<zArray<double>>(header.nodes, 1, 1, header_.variables[field.name],
                                                                   std::move(field.values)));
    }
    return zone;
}

void TecplotZoneData::skip(std::int64_t zoneStart) {
    zoneStart_ = zoneStart;
    const TecplotZoneHeader& header = header_.zone;
    const std::vector<Values*> nowhere(header.activeVariables.size(), nullptr);
    if (header.packing == TecplotPacking::Point) {
        readPoints(nowhere, header.nodes);
    } else {
        readBlocks(nowhere, header.nodes);
    }
    const std::int64_t corners = std::int64_t{header.elements} * cornersPerElement(header.type);
    std::int32_t ignored = 0;
    for (std::int64_t corner = 0; corner < corners; ++corner) {
        if (!stream_.readInt(ignored)) {
            raise(__LINE__);
        }
    }
}

// x, y, z and, when wanted, the other fields in file order.
std::vector<TecplotZoneData::Field> TecplotZoneData::fieldsToKeep() const {
    std::vector<Field> fields;
    if (header_.variables.empty()) {
        return fields;
    }
    std::vector<bool> taken(header_.variables.size());
    for (const std::size_t variable : header_.coordinates) {
        fields.push_back({header_.firstOfName[variable], {}});
        taken[fields.back().name] = true;
    }
    for (std::size_t variable = 0; !coordinatesOnly_ && variable < taken.size(); ++variable) {
        if (header_.firstOfName[variable] == variable && !taken[variable]) {
            fields.push_back({variable, {}});
        }
    }
    return fields;
}

// For each active variable where its values go: null for one that is not kept, or whose values a later variable of the
// same name replaces.
std::vector<TecplotZoneData::Values*> TecplotZoneData::targetsOf(std::vector<Field>& fields) const {
    std::vector<Values*> ofName(header_.variables.size(), nullptr);
    for (Field& field : fields) {
        ofName[field.name] = &field.values;
    }
    const std::vector<std::int32_t>& active = header_.zone.activeVariables;
    std::vector<Values*> targets(active.size(), nullptr);
    for (std::size_t place = active.size(); place-- > 0;) {
        const std::size_t name = header_.firstOfName[static_cast<std::size_t>(active[place])];
        targets[place] = std::exchange(ofName[name], nullptr);
    }
    return targets;
}

std::vector<TecplotZoneData::Field> TecplotZoneData::readFields(std::int64_t points) {
    std::vector<Field> fields = fieldsToKeep();
    const std::vector<Values*> targets = targetsOf(fields);
    if (targets.empty()) {
        allowZeros(points, fields);
    }
    if (header_.zone.packing == TecplotPacking::Point) {
        readPoints(targets, points);
    } else {
        readBlocks(targets, points);
    }
    for (Field& field : fields) {
        field.values.resize(static_cast<std::size_t>(points)); // passive ones are 0
    }
    return fields;
}

void TecplotZoneData::readPoints(const std::vector<Values*>& targets, std::int64_t points) {
    for (Values* const target : targets) {
        if (target != nullptr) {
            reserveLarge(*target, room(points, targets.size()));
        }
    }
    // A point without numbers is no read, but the state of the stream is looked at behind it.
    if (targets.empty() && points > 0 && stream_.fail()) {
        raise(__LINE__);
    }
    const std::size_t width = targets.size();
    RowReader<double> rows(stream_, width);
    for (std::int64_t left = width > 0 ? points : 0; left > 0;) {
        const std::size_t taken = rows.next(left);
        if (taken == 0) {
            raise(__LINE__);
        }
        for (std::size_t place = 0; place < width; ++place) {
            for (std::size_t i = place; targets[place] != nullptr && i < taken * width; i += width) {
                targets[place]->push_back(rows.numbers()[i]);
            }
        }
        left -= static_cast<std::int64_t>(taken);
    }
}

void TecplotZoneData::readBlocks(const std::vector<Values*>& targets, std::int64_t points) {
    double value = 0.0;
    for (Values* const target : targets) {
        if (target != nullptr) {
            reserveLarge(*target, room(points, 1));
        }
        for (std::int64_t point = 0; point < points; ++point) {
            if (!stream_.readDouble(value)) {
                raise(__LINE__);
            }
            if (target != nullptr) {
                target->push_back(value);
            }
        }
    }
}

// A zone of which the file holds no number at all could claim any size. Together such zones get a million points, or
// as many as the file has bytes.
void TecplotZoneData::allowZeros(std::int64_t points, const std::vector<Field>& fields) {
    constexpr std::int64_t always = std::int64_t{1} << 20;
    pointsWithoutNumbers_ += fields.empty() ? 0 : points;
    if (pointsWithoutNumbers_ > std::max(always, stream_.size())) {
        raise(__LINE__);
    }
}

std::vector<std::int32_t> TecplotZoneData::readElements() {
    const TecplotZoneHeader& header = header_.zone;
    std::vector<std::int32_t> corners(static_cast<std::size_t>(cornersPerElement(header.type)));
    std::vector<std::int32_t> connectivity;
    const std::size_t trianglesEach = corners.size() - 2;
    reserveLarge(connectivity, room(header.elements, corners.size()) * trianglesEach * entriesPerTriangle);
    RowReader<std::int32_t> rows(stream_, corners.size());
    for (std::int64_t left = header.elements; left > 0;) {
        const std::int64_t begin = stream_.tell();
        const std::size_t taken = rows.next(left);
        const auto* const first = rows.numbers();
        if (taken == 0 || !areNodes(first, first + taken * corners.size())) {
            raiseAtElement(begin, corners);
        }
        for (std::size_t row = 0; row < taken; ++row) {
            std::copy_n(first + row * corners.size(), corners.size(), corners.begin());
            appendElement(corners, connectivity);
        }
        left -= static_cast<std::int64_t>(taken);
    }
    return connectivity;
}

bool TecplotZoneData::areNodes(const std::int32_t* begin, const std::int32_t* end) const {
    return std::all_of(begin, end, [this](std::int32_t node) { return node >= 1 && node <= header_.zone.nodes; });
}

// Of the elements from `begin` on one is wrong, and the stream may stand far behind it.
void TecplotZoneData::raiseAtElement(std::int64_t begin, std::vector<std::int32_t>& corners) {
    stream_.clear();
    stream_.seek(begin);
    while (stream_.readInts(corners.data(), corners.size()) &&
           areNodes(corners.data(), corners.data() + corners.size())) {
    }
    raise(__LINE__);
}

// How many of `count` things of so many numbers each what is left of the file can hold: a number takes two bytes.
std::size_t TecplotZoneData::room(std::int64_t count, std::size_t numbersEach) const {
    const std::int64_t left = std::max<std::int64_t>(stream_.size() - stream_.tell(), 0);
    return static_cast<std::size_t>(std::min(count, left / 2 / static_cast<std::int64_t>(numbersEach) + 1));
}

// A zone takes the name that was last found in it as its title, also while its fields are made.
std::string TecplotZoneData::zoneTitle() const {
    for (std::size_t variable = header_.variables.size(); variable-- > 0;) {
        if (header_.firstOfName[variable] != variable) {
            return header_.variables[variable];
        }
    }
    return header_.zone.title;
}

void TecplotZoneData::raise(std::int32_t line) {
    throw ValueError(tecplotUnit, line,
                     "invalid data\nZone No: " + std::to_string(header_.zoneNumber) + "\nZone Title: " +
                         header_.zone.title + "\nLine Shift: " + std::to_string(lineOfFailure()) + "\n");
}

// The number of the line where the stream stands; the one where the zone's header begins is the first.
std::int64_t TecplotZoneData::lineOfFailure() {
    stream_.clear();
    const std::int64_t failure = stream_.tell();
    stream_.seek(zoneStart_);
    std::int64_t line = 1;
    while (stream_.skipTo('\n') && stream_.tell() < failure) {
        stream_.get();
        ++line;
    }
    return line;
}

} // namespace velmora
