#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "TecplotHeaderParser.h"
#include "TextStream.h"
#include "zBlock.h"

namespace velmora {

/// Takes the numbers of one zone after another from a file, as the headers tell. A number that cannot be read, counts
/// that have no room in 32 bits and elements on nodes that do not exist raise a ValueError with a report on the place.
///
/// Memory is taken as numbers arrive, whatever a header claims. A zone has the fields x, y, z and, unless
/// `coordinatesOnly`, the others behind them in file order; variables of one name, letters of either case being equal,
/// are one field, which has the values of the last.
class TecplotZoneData {
public:
    /// `stream` and `header` must outlive the object.
    TecplotZoneData(TextStream& stream, const TecplotHeader& header, bool coordinatesOnly)
        : stream_(stream), header_(header), coordinatesOnly_(coordinatesOnly) {}

    /// An ordered zone. Null, with its numbers taken, when it is less than 2 points wide in i or j. `zoneStart` is
    /// where the zone's header begins: reports count lines from there.
    std::unique_ptr<zBlock> readOrdered(std::int64_t zoneStart);

    /// A zone of triangles; every quadrilateral becomes two. Raises a ParseError when the file has no variables.
    std::unique_ptr<zBlock_fe> readTriangles(std::int64_t zoneStart);

    /// Passes over the numbers of a zone of any kind of elements.
    void skip(std::int64_t zoneStart);

private:
    using Values = std::vector<double>;
    // A field of the zone under way; `name` is the first variable of that name.
    struct Field {
        std::size_t name;
        Values values;
    };

    std::vector<Field> fieldsToKeep() const;
    std::vector<Values*> targetsOf(std::vector<Field>& fields) const;
    std::vector<Field> readFields(std::int64_t points);
    void readPoints(const std::vector<Values*>& targets, std::int64_t points);
    void readBlocks(const std::vector<Values*>& targets, std::int64_t points);
    void allowZeros(std::int64_t points, const std::vector<Field>& fields);
    std::vector<std::int32_t> readElements();
    bool areNodes(const std::int32_t* begin, const std::int32_t* end) const;
    [[noreturn]] void raiseAtElement(std::int64_t begin, std::vector<std::int32_t>& corners);
    std::size_t room(std::int64_t count, std::size_t numbersEach) const;
    std::string zoneTitle() const;
    [[noreturn]] void raise(std::int32_t line);
    std::int64_t lineOfFailure();

    TextStream& stream_;
    const TecplotHeader& header_;
    bool coordinatesOnly_;
    std::int64_t zoneStart_ = 0;
    std::int64_t pointsWithoutNumbers_ = 0;
};

} // namespace velmora
