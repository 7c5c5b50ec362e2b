#pragma once

#include <initializer_list>
#include <vector>

#include "DocumentState.h"
#include "RecordingUi.h"
#include "draw_dump.h"
#include "draw_lists.h"
#include "small_models.h"

namespace velmora::test {

/// A document without a view, to build lists of.
struct DrawRig {
    RecordingUi ui;
    DocumentState doc{ui, "."};

    explicit DrawRig(PatchList patches) {
        doc.patches = std::move(patches);
        doc.checkRegularity(doc.patches);
    }

    std::vector<std::string> wire() const { return dump(buildDrawList(doc, 1)); }
    std::vector<std::string> surface() const { return dump(buildDrawList(doc, 2)); }

    void block(std::initializer_list<std::int32_t> patches) {
        doc.blockCount = 0;
        for (const std::int32_t patch : patches) {
            doc.blockList[static_cast<std::size_t>(doc.blockCount)] = patch;
            ++doc.blockCount;
        }
    }
};

/// A patch of one square: (x, 0, 0), (x + 1, 0, 0) in section 0, (x, 1, 0), (x + 1, 1, 0) in section 1.
inline Patch square(double x) {
    return {{{x, 0, 0}, {x + 1, 0, 0}}, {{x, 1, 0}, {x + 1, 1, 0}}};
}

/// Squares at x = 0, 10, 20 and so on.
inline PatchList squares(int count) {
    PatchList list;
    for (int k = 0; k < count; ++k) {
        list.push_back(square(10.0 * k));
    }
    return list;
}

/// The strips that list 1 draws for the sections of a square, or for its lines.
inline std::vector<std::string> sectionStrips(double x, const Colour& colour) {
    return {strip(colour, {{x, 0, 0}, {x + 1, 0, 0}}), strip(colour, {{x, 1, 0}, {x + 1, 1, 0}})};
}
inline std::vector<std::string> lineStrips(double x, const Colour& colour) {
    return {strip(colour, {{x, 0, 0}, {x, 1, 0}}), strip(colour, {{x + 1, 0, 0}, {x + 1, 1, 0}})};
}

/// One list behind the other.
inline std::vector<std::string> joined(std::initializer_list<std::vector<std::string>> parts) {
    std::vector<std::string> all;
    for (const auto& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

/// Those lines of a dump that draw points.
inline std::vector<std::string> pointsOnly(const std::vector<std::string>& lines) {
    std::vector<std::string> points;
    for (const std::string& line : lines) {
        if (line.starts_with("point ")) {
            points.push_back(line);
        }
    }
    return points;
}

} // namespace velmora::test
