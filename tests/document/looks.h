#pragma once

#include <cmath>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "state_fixture.h"

namespace velmora::test {

using Coordinate = double zVec<double>::*;

/// Numbers with up to four digits behind the point, as short as they are.
inline std::string text(const std::vector<double>& numbers) {
    std::ostringstream out;
    for (const double number : numbers) {
        const double rounded = std::round(number * 1e4) / 1e4;
        out << (out.tellp() > 0 ? " " : "") << (rounded == 0 ? 0 : rounded);
    }
    return out.str();
}

/// What a test looks at in the document afterwards.
using Look = std::function<std::string(DocumentState&)>;

/// One coordinate along a section.
inline Look along(std::size_t patch, std::size_t section, Coordinate axis = &zVec<double>::x) {
    return [=](DocumentState& doc) { return text(coordinates(doc.patches.at(patch).at(section), axis)); };
}

/// One coordinate of the first points of a patch's sections.
inline Look across(std::size_t patch, Coordinate axis = &zVec<double>::y) {
    return [=](DocumentState& doc) {
        std::vector<double> values;
        for (const PointList& points : doc.patches.at(patch)) {
            values.push_back(points.front().*axis);
        }
        return text(values);
    };
}

/// A point, all three coordinates.
inline Look pointOf(std::size_t patch, std::size_t section, std::size_t point) {
    return [=](DocumentState& doc) {
        const zVec<double>& p = doc.patches.at(patch).at(section).at(point);
        return text({p.x, p.y, p.z});
    };
}

/// Per patch the numbers of points of its sections.
inline std::string countsOf(const PatchList& patches) {
    std::string counts;
    for (const Patch& patch : patches) {
        counts += counts.empty() ? "" : "; ";
        const std::vector<std::int32_t> numbers = velmora::test::countsOf(patch);
        counts += text({numbers.begin(), numbers.end()});
    }
    return counts;
}

inline std::string pointCounts(DocumentState& doc) {
    return countsOf(doc.patches);
}

inline std::string fieldCounts(DocumentState& doc) {
    return countsOf(doc.fieldPatches);
}

} // namespace velmora::test
