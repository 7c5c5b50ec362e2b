#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "DrawList.h"

namespace velmora {

struct DocumentState;

/// A value for each point of a model: of a patch section by section, of a zone node by node. Parts without values have
/// none at all.
struct PointValues {
    std::string name;
    std::vector<std::vector<double>> parts;
    bool ofCells = false; ///< of patches instead one for each cell, which has it all over
    double least = 0.0;   ///< a difference below this is none
};

/// What the document's surface is to be coloured by; none when nothing is, or when there are no such values.
std::optional<PointValues> valuesToShow(const DocumentState& document);

/// A range of values in bands of one width. What lies outside belongs to the first or the last one.
class ValueScale {
public:
    /// `least` is to be below `most`, and `bands` 1 or more; one band may have one value alone.
    ValueScale(double least, double most, std::int32_t bands);

    std::int32_t bandCount() const { return static_cast<std::int32_t>(edges_.size()) - 1; }
    /// The value at which a band begins; of bandCount() where the last one ends. A value at the edge of two bands is
    /// the upper one's.
    double edge(std::int32_t band) const { return edges_[static_cast<std::size_t>(band)]; }
    std::int32_t bandOf(double value) const;
    /// From a dark blue to a light yellow, each band lighter than the one before: lightness alone tells them apart.
    Colour colourOf(std::int32_t band) const;

private:
    std::vector<double> edges_;
};

/// The scale over all finite values. Values without a difference have one band.
ValueScale scaleOf(const PointValues& values, std::int32_t bands);

/// A row of a legend.
struct LegendRow {
    Colour colour{};
    std::string text; ///< "from ... to" of the band, or its one value
};
/// The bands of a scale, the highest first, with as many digits as tell them apart.
std::vector<LegendRow> legendOf(const ValueScale& scale);

/// Values that are shown, and how.
struct ColouredValues {
    PointValues values;
    ValueScale scale;
};
/// Of the document as its values and the values of the dialog stand.
std::optional<ColouredValues> colouredValues(const DocumentState& document);

/// Parts the lit surface of list 2 or 4, built of `document`, along the edges of the bands, in which values go linearly
/// over each triangle, and gives each band its colour, readable: a batch for each part and band. Parts without values
/// stay as they are, and triangles with a value that is no number keep the part's colour.
void colourByValue(DrawList& list, const DocumentState& document, const ColouredValues& shown);

} // namespace velmora
