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

/// What a cell is like, in the form that compares fast: squares and cotangents. What it has not is none.
struct CellShape {
    zVec<double> first; ///< twice the areas of its triangles along their normals
    zVec<double> second;
    MaybeValue aspect; ///< its square
    MaybeValue skew;   ///< the cotangent of the angle, without its sign
    MaybeValue warp;   ///< the cotangent of the angle
};

double aspectOf(double squared) {
    return std::sqrt(squared);
}

double skewOf(double cotangent) {
    return (90.0 - degreesOfCotangent(cotangent)) / 90.0;
}

/// Aspect and skew; a cell with fewer than three different points has neither.
void addEdges(const Face& face, const SharedPoints& points, const CellCorners& corners, CellShape& shape) {
    double longest = 0.0;
    double shortest = std::numeric_limits<double>::infinity();
    const FaceEdges edges(face);
    for (const FaceEdge& edge : edges) {
        const double squared = squaredDistance(points.at(edge.from), points.at(edge.to));
        longest = std::max(longest, squared);
        shortest = std::min(shortest, squared);
    }
    if (edges.begin() == edges.end()) {
        return;
    }
    shape.aspect = longest / shortest;
    const auto& numbers = face.corners;
    for (std::size_t i = 0; i < 4; ++i) {
        const std::size_t next = (i + 1) % 4;
        const std::size_t before = (i + 3) % 4;
        if (numbers[i] != numbers[next] && numbers[i] != numbers[before]) {
            const AngleRatio angle = angleBetween(corners[next] - corners[i], corners[before] - corners[i]);
            const double cotangent = std::abs(angle.cosine) / angle.sine;
            if (shape.skew ? cotangent > *shape.skew : !std::isnan(cotangent)) {
                shape.skew = cotangent;
            }
        }
    }
}

CellShape shapeOf(const Face& face, const SharedPoints& points) {
    CellCorners corners;
    for (std::size_t i = 0; i < 4; ++i) {
        corners[i] = points.at(face.corners[i]);
    }
    CellShape shape;
    shape.first = doubleArea(corners[0], corners[1], corners[2]);
    shape.second = doubleArea(corners[0], corners[2], corners[3]);
    const zVec<double> none;
    if (!(shape.first == none) && !(shape.second == none)) {
        const AngleRatio angle = angleBetween(shape.first, shape.second);
        shape.warp = angle.cosine / angle.sine;
    }
    addEdges(face, points, corners, shape);
    return shape;
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
        quality.aspect = aspect_.worst(aspectOf);
        quality.skew = skew_.worst(skewOf);
        quality.warp = warp_.worst([](double negative) { return degreesOfCotangent(-negative); });
    }

private:
    PatchPlace placeOf(std::size_t cell) const {
        const auto row = static_cast<std::size_t>(cells_.points - 1);
        return {static_cast<std::int32_t>(cell / row), static_cast<std::int32_t>(cell % row)};
    }

    void addCell(std::size_t cell, PatchQuality& quality) {
        const CellShape shape = shapeOf(model_.faces[cells_.firstFace + cell], model_.points);
        quality.area += 0.5 * (lengthOf(shape.first) + lengthOf(shape.second));
        const zVec<double> none;
        if (shape.first == none && shape.second == none) {
            count(quality.collapsedCells, placeOf(cell));
        }
        if (shape.aspect) {
            aspect_.offer(*shape.aspect, placeOf(cell));
        }
        if (shape.skew) {
            skew_.offer(*shape.skew, placeOf(cell));
        }
        if (shape.warp) {
            warp_.offer(-*shape.warp, placeOf(cell));
        }
    }

    const PatchCells& cells_;
    const ModelFaces& model_;
    const std::vector<bool>& folded_;
    Largest aspect_; ///< its square
    Largest skew_;   ///< the cotangent of the angle, without its sign
    Largest warp_;   ///< the cotangent of the angle with its sign turned
};

// ---- Value by value -------------------------------------------------------------------------------------------------

double valueOf(const CellShape& shape, GridValue kind) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    switch (kind) {
    case GridValue::Aspect:
        return shape.aspect ? aspectOf(*shape.aspect) : none;
    case GridValue::Skew:
        return shape.skew ? skewOf(*shape.skew) : none;
    case GridValue::Warp:
        return shape.warp ? degreesOfCotangent(*shape.warp) : none;
    case GridValue::Growth:
        break;
    }
    return none;
}

/// The growth at the points of a patch, section by section.
class GrowthAtPoints {
public:
    explicit GrowthAtPoints(const Patch& patch) : patch_(patch) {
        for (const PointList& section : patch) {
            begins_.push_back(values_.size());
            values_.resize(values_.size() + section.size(), 1.0);
        }
    }

    std::vector<double> values() {
        for (std::int32_t i = 0; i < countOf(patch_); ++i) {
            addCurve(false, i);
        }
        const std::int32_t lines = isGrid(patch_) ? lineCount(patch_) : 0;
        for (std::int32_t j = 0; j < lines; ++j) {
            addCurve(true, j);
        }
        return std::move(values_);
    }

private:
    void addCurve(bool line, std::int32_t number) {
        const ConstPatchCurve curve(patch_, line, number);
        for (std::int32_t i = 1; i + 1 < curve.count(); ++i) {
            const MaybeValue growth = growthOf(distance(curve[i - 1], curve[i]), distance(curve[i], curve[i + 1]));
            const auto section = static_cast<std::size_t>(line ? i : number);
            double& value = values_[begins_[section] + static_cast<std::size_t>(line ? number : i)];
            value = std::max(value, growth.value_or(1.0));
        }
    }

    const Patch& patch_;
    std::vector<std::size_t> begins_; ///< of each section
    std::vector<double> values_;
};

} // namespace

bool hasCell(const PatchList& patches) {
    const auto wide = [](const PointList& section) { return section.size() > 1; };
    return std::any_of(patches.begin(), patches.end(), [&](const Patch& patch) {
        return std::adjacent_find(patch.begin(), patch.end(), [&](const PointList& a, const PointList& b) {
                   return wide(a) && wide(b);
               }) != patch.end();
    });
}

std::vector<double> gridValues(GridValue kind, const Patch& patch, std::size_t number, const ModelFaces& model) {
    if (!isOfCells(kind)) {
        return GrowthAtPoints(patch).values();
    }
    const PatchCells& cells = model.patches[number];
    std::vector<double> values;
    values.reserve(cells.cellCount());
    for (std::size_t cell = 0; cell < cells.cellCount(); ++cell) {
        values.push_back(valueOf(shapeOf(model.faces[cells.firstFace + cell], model.points), kind));
    }
    return values;
}

PatchQuality patchQuality(const Patch& patch, std::size_t number, const ModelFaces& model,
                          const std::vector<bool>& folded) {
    PatchQuality quality;
    CurveSurvey(patch).fill(quality);
    CellSurvey(model.patches[number], model, folded).fill(quality);
    return quality;
}

} // namespace velmora
