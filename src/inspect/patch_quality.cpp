#include "patch_quality.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "curve_values.h"
#include "patch_curves.h"
#include "vectors.h"

namespace velmora {

namespace {

/// Keeps the first of the largest values. What is not a number is passed over.
class Largest {
public:
    void offer(double value, const PatchPlace& at) {
        if (at_ ? value > value_ : !std::isnan(value)) {
            value_ = value;
            at_ = at;
        }
    }
    /// With the value that belongs to the largest one.
    template <class ValueOf>
    WorstValue worst(ValueOf valueOf) const {
        return at_ ? WorstValue{valueOf(value_), at_} : WorstValue{};
    }
    WorstValue worst() const {
        return worst([](double value) { return value; });
    }

private:
    double value_ = 0.0;
    std::optional<PatchPlace> at_;
};

void count(FoundPlaces& found, const PatchPlace& at) {
    found.at = found.count++ == 0 ? at : found.at;
}

// ---- Curves ---------------------------------------------------------------------------------------------------------

class CurveSurvey {
public:
    explicit CurveSurvey(const Patch& patch) : patch_(patch), grid_(isGrid(patch)) {}

    void fill(PatchQuality& quality) {
        for (std::int32_t i = 0; i < countOf(patch_); ++i) {
            addCurve(false, i);
        }
        const std::int32_t lines = grid_ ? lineCount(patch_) : 0;
        for (std::int32_t j = 0; j < lines; ++j) {
            addCurve(true, j);
        }
        quality.smallestStep = smallest_.worst([](double negative) { return 0.0 - negative; });
        quality.largestStep = largest_.worst();
        quality.growth = growth_.worst();
        quality.growth.value = quality.growth.value.value_or(1.0);
        quality.repeatedPoints = repeated_;
    }

private:
    void addCurve(bool line, std::int32_t number) {
        const ConstPatchCurve curve(patch_, line, number);
        const auto place = [line, number](std::int32_t i) {
            return line ? PatchPlace{i, number} : PatchPlace{number, i};
        };
        double before = 0.0;
        for (std::int32_t i = 1; i < curve.count(); ++i) {
            const double step = distance(curve[i - 1], curve[i]);
            smallest_.offer(-step, place(i - 1));
            largest_.offer(step, place(i - 1));
            if (const MaybeValue growth = i > 1 ? growthOf(before, step) : std::nullopt) {
                growth_.offer(*growth, place(i - 1));
            }
            // A point that repeats its neighbours in both directions counted as the sections went by.
            if (curve[i] == curve[i - 1] && !(line && repeatsInSection(i, number))) {
                count(repeated_, place(i));
            }
            before = step;
        }
    }

    bool repeatsInSection(std::int32_t section, std::int32_t point) const {
        const PointList& points = patch_[static_cast<std::size_t>(section)];
        const auto at = static_cast<std::size_t>(point);
        return at > 0 && points[at] == points[at - 1];
    }

    const Patch& patch_;
    bool grid_;
    Largest smallest_; ///< of the steps with their signs turned
    Largest largest_;
    Largest growth_;
    FoundPlaces repeated_;
};

// ---- Cells ----------------------------------------------------------------------------------------------------------

/// The corners of a cell in space.
using CellCorners = std::array<zVec<double>, 4>;

/// An angle that is known by multiples of its cosine and sine: comparing their ratio spares the angle itself.
struct AngleRatio {
    double cosine;
    double sine; ///< not negative
};

AngleRatio angleBetween(const zVec<double>& a, const zVec<double>& b) {
    return {dot(a, b), lengthOf(cross(a, b))};
}

double degrees(double radians) {
    return radians * (180.0 / std::numbers::pi);
}

/// The angle in degrees of a ratio of cosine by sine.
double degreesOfCotangent(double cotangent) {
    return degrees(std::atan2(1.0, cotangent));
}

class CellSurvey {
public:
    CellSurvey(const PatchCells& cells, const ModelFaces& model, const std::vector<bool>& folded)
        : cells_(cells), model_(model), folded_(folded) {}

    void fill(PatchQuality& quality) {
        for (std::size_t cell = 0; cell < cells_.cellCount(); ++cell) {
            addCell(cell, quality);
            if (folded_[cells_.firstFace + cell]) {
                count(quality.foldedCells, placeOf(cell));
            }
        }
        quality.aspect = aspect_.worst([](double squared) { return std::sqrt(squared); });
        quality.skew = skew_.worst([](double cotangent) { return (90.0 - degreesOfCotangent(cotangent)) / 90.0; });
        quality.warp = warp_.worst([](double negative) { return degreesOfCotangent(-negative); });
    }

private:
    const Face& face(std::size_t cell) const { return model_.faces[cells_.firstFace + cell]; }

    PatchPlace placeOf(std::size_t cell) const {
        const auto row = static_cast<std::size_t>(cells_.points - 1);
        return {static_cast<std::int32_t>(cell / row), static_cast<std::int32_t>(cell % row)};
    }

    void addCell(std::size_t cell, PatchQuality& quality) {
        CellCorners corners;
        for (std::size_t i = 0; i < 4; ++i) {
            corners[i] = model_.points.at(face(cell).corners[i]);
        }
        const zVec<double> first = doubleArea(corners[0], corners[1], corners[2]);
        const zVec<double> second = doubleArea(corners[0], corners[2], corners[3]);
        quality.area += 0.5 * (lengthOf(first) + lengthOf(second));
        const zVec<double> none;
        if (first == none && second == none) {
            count(quality.collapsedCells, placeOf(cell));
        } else if (!(first == none) && !(second == none)) {
            const AngleRatio angle = angleBetween(first, second);
            warp_.offer(-angle.cosine / angle.sine, placeOf(cell));
        }
        addEdges(cell, corners);
    }

    /// Aspect and skew; a cell with fewer than three different points has neither.
    void addEdges(std::size_t cell, const CellCorners& corners) {
        double longest = 0.0;
        double shortest = std::numeric_limits<double>::infinity();
        const FaceEdges edges(face(cell));
        for (const FaceEdge& edge : edges) {
            const double squared = squaredDistance(model_.points.at(edge.from), model_.points.at(edge.to));
            longest = std::max(longest, squared);
            shortest = std::min(shortest, squared);
        }
        if (edges.begin() == edges.end()) {
            return;
        }
        aspect_.offer(longest / shortest, placeOf(cell));
        const auto& numbers = face(cell).corners;
        for (std::size_t i = 0; i < 4; ++i) {
            const std::size_t next = (i + 1) % 4;
            const std::size_t before = (i + 3) % 4;
            if (numbers[i] != numbers[next] && numbers[i] != numbers[before]) {
                const AngleRatio angle = angleBetween(corners[next] - corners[i], corners[before] - corners[i]);
                skew_.offer(std::abs(angle.cosine) / angle.sine, placeOf(cell));
            }
        }
    }

    const PatchCells& cells_;
    const ModelFaces& model_;
    const std::vector<bool>& folded_;
    Largest aspect_; ///< its square
    Largest skew_;   ///< the cotangent of the angle, without its sign
    Largest warp_;   ///< the cotangent of the angle with its sign turned
};

} // namespace

PatchQuality patchQuality(const Patch& patch, std::size_t number, const ModelFaces& model,
                          const std::vector<bool>& folded) {
    PatchQuality quality;
    CurveSurvey(patch).fill(quality);
    CellSurvey(model.patches[number], model, folded).fill(quality);
    return quality;
}

} // namespace velmora
