#include "value_colours.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "DialogValues.h"
#include "DocumentState.h"
#include "compared_parts.h"
#include "patch_quality.h"
#include "report_lines.h"
#include "vectors.h"

namespace velmora {

namespace {

/// From the lowest to the highest value. Their lightness rises evenly, and blue and yellow are what all eyes tell
/// apart.
constexpr std::array<Colour, 5> anchors{{{0.24F, 0.24F, 0.50F, 1.0F},
                                         {0.24F, 0.36F, 0.62F, 1.0F},
                                         {0.28F, 0.56F, 0.58F, 1.0F},
                                         {0.62F, 0.74F, 0.42F, 1.0F},
                                         {1.00F, 0.92F, 0.30F, 1.0F}}};

std::optional<PointValues> comparedValues(const DocumentState& document) {
    if (document.comparison() == nullptr) {
        return std::nullopt;
    }
    return PointValues{"Distance", comparedParts(document)};
}

/// The name of a variable in the line that lists them in quotes; empty when it has not so many.
std::string variableName(const std::string& line, std::int32_t number) {
    std::size_t end = 0;
    for (;; --number) {
        const std::size_t begin = line.find('"', end);
        end = begin == std::string::npos ? begin : line.find('"', begin + 1);
        if (end == std::string::npos) {
            return "";
        }
        if (number == 0) {
            return line.substr(begin + 1, end - begin - 1);
        }
        ++end;
    }
}

bool sameShape(const Patch& a, const Patch& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const PointList& one, const PointList& other) { return one.size() == other.size(); });
}

std::optional<PointValues> fieldValues(const DocumentState& document, std::int32_t index) {
    constexpr std::int32_t coordinates = 3;
    constexpr std::array<double zVec<double>::*, 3> members = {&zVec<double>::x, &zVec<double>::y, &zVec<double>::z};
    if (!document.fieldLoaded || index >= document.fieldCount ||
        !std::equal(document.patches.begin(), document.patches.end(), document.fieldPatches.begin(),
                    document.fieldPatches.end(), sameShape)) {
        return std::nullopt;
    }
    PointValues shown{variableName(document.fieldVariablesLine, coordinates + index), {}};
    const auto member = members.at(static_cast<std::size_t>(index));
    for (const Patch& patch : document.fieldPatches) {
        auto& values = shown.parts.emplace_back();
        for (const PointList& section : patch) {
            for (const zVec<double>& value : section) {
                values.push_back(value.*member);
            }
        }
    }
    return shown;
}

/// Differences of these values that files of few digits, and rounding, make of grids that have none. Warp counts in
/// degrees, the others from 0 or 1 on.
constexpr std::array<double, std::size(gridValueKinds)> leastDifferences = {1e-5, 1e-5, 1e-3, 1e-5};
constexpr std::array<const char*, std::size(gridValueKinds)> gridValueNames = {"Aspect", "Skew", "Warp, degrees",
                                                                               "Growth"};

std::optional<PointValues> reportValues(const DocumentState& document, std::int32_t index) {
    if (document.structureKind != StructureKind::Structured) {
        return std::nullopt;
    }
    const auto kind = static_cast<std::size_t>(index);
    PointValues shown{gridValueNames.at(kind), {}, isOfCells(gridValueKinds[kind]), leastDifferences.at(kind)};
    const ModelFaces model = modelFaces(document.patches, {});
    for (std::size_t k = 0; k < document.patches.size(); ++k) {
        shown.parts.push_back(gridValues(gridValueKinds[kind], document.patches[k], k, model));
    }
    return shown;
}

struct Corner {
    zVec<double> at;
    zVec<double> normal;
    double value = 0.0;
};

/// A corner of what is left of a triangle, and the ends of the side of the triangle that it lies on: one and the same
/// for a corner of the triangle itself.
struct CutCorner : Corner {
    const Corner* from = nullptr;
    const Corner* to = nullptr;
};

/// Where the value stands on the side of the triangle on which both lie. It is found from the ends of that side, the
/// lower one first, whatever was cut off before: so bands and triangles that meet there have one point, and the picture
/// has no cracks.
CutCorner between(const CutCorner& a, const CutCorner& b, double value) {
    const CutCorner& cut = a.from != a.to ? a : b;
    const bool isWhole = cut.from == cut.to;
    const Corner* low = isWhole ? a.from : cut.from;
    const Corner* high = isWhole ? b.from : cut.to;
    if (low->value > high->value) {
        std::swap(low, high);
    }
    const double t = (value - low->value) / (high->value - low->value);
    return {{low->at + (high->at - low->at) * t, unitOf(low->normal * (1.0 - t) + high->normal * t), value}, low, high};
}

/// What of the polygon lies on one side of a value.
std::vector<CutCorner> cut(const std::vector<CutCorner>& polygon, double value, bool above) {
    std::vector<CutCorner> kept;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const CutCorner& corner = polygon[i];
        const CutCorner& next = polygon[(i + 1) % polygon.size()];
        if (above ? corner.value >= value : corner.value <= value) {
            kept.push_back(corner);
        }
        if ((corner.value < value && next.value > value) || (corner.value > value && next.value < value)) {
            kept.push_back(between(corner, next, value));
        }
    }
    return kept;
}

/// The triangles of one part, sorted into bands.
class BandTriangles {
public:
    explicit BandTriangles(const ValueScale& scale)
        : scale_(scale), bands_(static_cast<std::size_t>(scale.bandCount())) {}

    void add(const Corner& a, const Corner& b, const Corner& c) {
        if (!std::isfinite(a.value) || !std::isfinite(b.value) || !std::isfinite(c.value)) {
            without_.insert(without_.end(), {a, b, c});
            return;
        }
        const auto [low, high] = std::minmax({a.value, b.value, c.value});
        const std::int32_t first = scale_.bandOf(low);
        std::int32_t last = scale_.bandOf(high);
        if (last > first && high <= scale_.edge(last)) {
            --last; // it ends at the edge of that band
        }
        for (std::int32_t band = first; band <= last; ++band) {
            std::vector<CutCorner> polygon = {{a, &a, &a}, {b, &b, &b}, {c, &c, &c}};
            if (band > first) {
                polygon = cut(polygon, scale_.edge(band), true);
            }
            if (band < last) {
                polygon = cut(polygon, scale_.edge(band + 1), false);
            }
            auto& triangles = bands_[static_cast<std::size_t>(band)];
            for (std::size_t i = 2; i < polygon.size(); ++i) {
                triangles.insert(triangles.end(), {polygon[0], polygon[i - 1], polygon[i]});
            }
        }
    }

    void moveInto(DrawList& list, const Colour& colourWithout) {
        for (std::int32_t band = 0; band < scale_.bandCount(); ++band) {
            addBatch(list, bands_[static_cast<std::size_t>(band)], scale_.colourOf(band), true);
        }
        addBatch(list, without_, colourWithout, false);
    }

private:
    static void addBatch(DrawList& list, std::vector<Corner>& corners, const Colour& colour, bool readable) {
        if (!corners.empty()) {
            DrawBatch& batch = list.begin(Primitive::Triangles, colour);
            batch.lit = true;
            batch.readable = readable;
            for (const Corner& corner : corners) {
                list.vertex(corner.at, corner.normal);
            }
            corners.clear();
        }
    }

    const ValueScale& scale_;
    std::vector<std::vector<Corner>> bands_;
    std::vector<Corner> without_;
};

/// Makes the coloured list of a plain one.
class Colourer {
public:
    Colourer(const DrawList& plain, const DocumentState& document, const ColouredValues& shown)
        : plain_(plain), document_(document), parts_(shown.values.parts), ofCells_(shown.values.ofCells),
          triangles_(shown.scale) {
        list_.number = plain.number;
    }

    DrawList coloured() {
        if (document_.structureKind == StructureKind::Unstructured) {
            zones();
        } else {
            patches();
        }
        for (; next_ < plain_.batches.size(); ++next_) {
            copy(plain_.batches[next_]);
        }
        return std::move(list_);
    }

private:
    bool isShown(std::int32_t part) const { return !document_.showBlockOnly || document_.inBlock(part); }

    /// The strips of the patches that are shown stand first, one between each two sections.
    void patches() {
        for (std::int32_t k = 0; k < countOf(document_.patches); ++k) {
            const auto part = static_cast<std::size_t>(k);
            const Patch& patch = document_.patches[part];
            std::size_t row = 0;
            for (std::size_t n = 0; isShown(k) && n + 1 < patch.size(); ++n) {
                const DrawBatch& strip = plain_.batches[next_++];
                if (parts_[part].empty()) {
                    copy(strip);
                    continue;
                }
                addStrip(strip, parts_[part].data() + row, patch[n].size());
                row += patch[n].size() - (ofCells_ ? 1 : 0);
            }
            finishPart();
        }
    }

    /// Its vertices go from the last point to the first, of the lower section and the upper one in turn.
    void addStrip(const DrawBatch& strip, const double* values, std::size_t points) {
        colour_ = strip.colour;
        std::size_t cell = 0;
        const auto cornerAt = [&](std::size_t i) {
            return corner(strip, i, values[ofCells_ ? cell : i % 2 * points + (points - 1 - i / 2)]);
        };
        for (std::size_t i = 0; i + 3 < strip.vertexCount; i += 2) {
            cell = points - 2 - i / 2;
            // Parted as Compare and the report part a cell: from its first point to the one across.
            const Corner across = cornerAt(i + 1);
            const Corner first = cornerAt(i + 2);
            triangles_.add(cornerAt(i), across, first);
            triangles_.add(across, cornerAt(i + 3), first);
        }
    }

    void zones() {
        for (std::int32_t k = 0; k < document_.partCount(); ++k) {
            const auto part = static_cast<std::size_t>(k);
            const zBlock_fe& zone = *document_.feRegion.blocks[part];
            if (!isShown(k) || !coordinatesOf(zone.variables)) {
                continue;
            }
            const DrawBatch& batch = plain_.batches[next_++];
            if (parts_[part].empty()) {
                copy(batch);
                continue;
            }
            colour_ = batch.colour;
            const auto cornerAt = [&](std::size_t i) {
                const auto node = static_cast<std::size_t>(zone.connectivity[i / 3 * 4 + i % 3]);
                return corner(batch, i, parts_[part][node]);
            };
            for (std::size_t i = 0; i + 2 < batch.vertexCount; i += 3) {
                triangles_.add(cornerAt(i), cornerAt(i + 1), cornerAt(i + 2));
            }
            finishPart();
        }
    }

    void finishPart() { triangles_.moveInto(list_, colour_); }

    Corner corner(const DrawBatch& batch, std::size_t i, double value) const {
        return {plain_.vertices[batch.firstVertex + i], plain_.normals[batch.firstNormal + i], value};
    }

    void copy(const DrawBatch& batch) {
        DrawBatch& taken = list_.begin(batch.primitive, batch.colour);
        const std::size_t firstVertex = taken.firstVertex;
        const std::size_t firstNormal = taken.firstNormal;
        taken = batch;
        taken.firstVertex = firstVertex;
        taken.firstNormal = firstNormal;
        const auto append = [&batch](auto& to, const auto& from, std::size_t first) {
            const auto begin = from.begin() + static_cast<std::ptrdiff_t>(first);
            to.insert(to.end(), begin, begin + static_cast<std::ptrdiff_t>(batch.vertexCount));
        };
        append(list_.vertices, plain_.vertices, batch.firstVertex);
        if (batch.hasNormals) {
            append(list_.normals, plain_.normals, batch.firstNormal);
        }
    }

    const DrawList& plain_;
    const DocumentState& document_;
    const std::vector<std::vector<double>>& parts_;
    bool ofCells_;
    BandTriangles triangles_;
    DrawList list_;
    Colour colour_{};
    std::size_t next_ = 0;
};

} // namespace

std::optional<PointValues> valuesToShow(const DocumentState& document) {
    const CColours& chosen = document.dialogs->colours;
    if (!chosen.isOn()) {
        return std::nullopt;
    }
    if (chosen.ofReport()) {
        return reportValues(document, chosen.reportIndex());
    }
    return chosen.ofCompare() ? comparedValues(document) : fieldValues(document, chosen.fieldIndex());
}

ValueScale::ValueScale(double least, double most, std::int32_t bands) {
    edges_.reserve(static_cast<std::size_t>(bands) + 1);
    for (std::int32_t band = 0; band <= bands; ++band) {
        const double t = static_cast<double>(band) / bands;
        edges_.push_back(least * (1.0 - t) + most * t);
    }
}

std::int32_t ValueScale::bandOf(double value) const {
    const auto inner = edges_.begin() + 1;
    return static_cast<std::int32_t>(std::upper_bound(inner, edges_.end() - 1, value) - inner);
}

Colour ValueScale::colourOf(std::int32_t band) const {
    const double place = bandCount() < 2 ? 0.0 : (anchors.size() - 1.0) * band / (bandCount() - 1.0);
    const std::size_t below = std::min(static_cast<std::size_t>(place), anchors.size() - 2);
    const auto t = static_cast<float>(place - static_cast<double>(below));
    Colour colour{};
    for (std::size_t i = 0; i < colour.size(); ++i) {
        colour.at(i) = anchors.at(below).at(i) * (1.0F - t) + anchors.at(below + 1).at(i) * t;
    }
    return colour;
}

ValueScale scaleOf(const PointValues& values, std::int32_t bands) {
    std::optional<std::pair<double, double>> range;
    for (const auto& part : values.parts) {
        for (const double value : part) {
            if (std::isfinite(value)) {
                range = range ? std::pair(std::min(range->first, value), std::max(range->second, value))
                              : std::pair(value, value);
            }
        }
    }
    const auto [least, most] = range.value_or(std::pair(0.0, 1.0));
    if (least < most && !(most - least < values.least)) {
        return {least, most, bands};
    }
    const double one = values.least > 0.0 ? std::round(least / values.least) * values.least : least;
    return {one, one, 1};
}

namespace {

/// Whether so many digits tell the ends of each band apart, as far as they differ.
bool tellBandsApart(const ValueScale& scale, int digits) {
    for (std::int32_t band = 0; band < scale.bandCount(); ++band) {
        if (scale.edge(band) < scale.edge(band + 1) &&
            shortNumber(scale.edge(band), digits) == shortNumber(scale.edge(band + 1), digits)) {
            return false;
        }
    }
    return true;
}

} // namespace

std::vector<LegendRow> legendOf(const ValueScale& scale) {
    constexpr int fewest = 6;
    constexpr int most = 17; // these tell all numbers apart
    int digits = fewest;
    while (digits < most && !tellBandsApart(scale, digits)) {
        ++digits;
    }
    std::vector<LegendRow> rows;
    for (std::int32_t band = scale.bandCount() - 1; band >= 0; --band) {
        std::string text = shortNumber(scale.edge(band), digits);
        if (scale.edge(band) < scale.edge(band + 1)) {
            text += " to " + shortNumber(scale.edge(band + 1), digits);
        }
        rows.push_back({scale.colourOf(band), std::move(text)});
    }
    return rows;
}

namespace {

/// A legend of what nothing shows would say what is not so.
bool hasAny(const PointValues& values) {
    return std::any_of(values.parts.begin(), values.parts.end(), [](const std::vector<double>& part) {
        return std::any_of(part.begin(), part.end(), [](double value) { return std::isfinite(value); });
    });
}

bool hasFaces(const DocumentState& document) {
    return document.structureKind == StructureKind::Unstructured || hasCell(document.patches);
}

} // namespace

std::optional<ColouredValues> colouredValues(const DocumentState& document) {
    auto values = hasFaces(document) ? valuesToShow(document) : std::nullopt;
    if (!values || !hasAny(*values)) {
        return std::nullopt;
    }
    const CColours& chosen = document.dialogs->colours;
    ValueScale scale =
        chosen.automatic ? scaleOf(*values, chosen.bands) : ValueScale(chosen.least, chosen.most, chosen.bands);
    return ColouredValues{std::move(*values), std::move(scale)};
}

void colourByValue(DrawList& list, const DocumentState& document, const ColouredValues& shown) {
    list = Colourer(list, document, shown).coloured();
}

} // namespace velmora
