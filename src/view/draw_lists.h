#pragma once

#include <optional>

#include "DrawList.h"
#include "PatchList.h"

namespace velmora {

struct DocumentState;

/// The number of the list that fits the document's kind and surface mode: 1 wire, 2 surface of a regular grid,
/// 3 and 4 wire and surface of zones; 0 for an empty document.
int listNumberFor(const DocumentState& document);
/// The same with the answer given whether the sections of each patch are of one length.
int listNumberFor(const DocumentState& document, bool isGrid);

/// Where the strips of a patch stand among the batches; none when it is not shown.
struct CurveBatches {
    std::optional<std::size_t> firstSection;
    std::optional<std::size_t> firstLine;
};

/// A list without the captured curve, and where to find each curve in it.
struct ModelList {
    DrawList list;
    std::vector<CurveBatches> curves; ///< per patch
};

/// What the capture and the zBlock change in the batches of a ModelList. While it stays the same, so do they.
struct CaptureColours {
    std::int32_t removed = -1;
    std::int32_t patch = -1;
    std::vector<std::int32_t> block;
    std::int32_t section = -1; ///< left out by the markers of the zBlock
    std::int32_t line = -1;

    friend bool operator==(const CaptureColours&, const CaptureColours&) = default;
};
CaptureColours captureColoursOf(const DocumentState& document);

/// The picture of the document as list `number` but for the captured curve. Linear in the points shown. What stands in
/// `memory` is thrown away and its memory used again: fetching that anew costs more than filling it.
ModelList buildModelList(const DocumentState& document, int number, ModelList memory = {});

/// The strips of list 1 or 2 for `patches`, which stand for those of the document in their order: no overlays.
DrawList buildPatchPicture(const DocumentState& document, const PatchList& patches, int number);

/// The captured section and line, as far as `model`, built from the same geometry, shows them. What it costs does not
/// grow with the model, but for the sections of the patch.
std::vector<Accent> capturedCurves(const DocumentState& document, const ModelList& model);

/// The picture of the document as list `number` (see listNumberFor), the captured curve in it.
DrawList buildDrawList(const DocumentState& document, int number, DrawList memory = {});

/// Colour of a patch before any highlight, by its place in a cycle of five. The base of the cycle is advanced only
/// by patches that are drawn, and by one cycle at a time; a place past the cycle keeps the colour drawn before.
class PatchColours {
public:
    explicit PatchColours(const DocumentState& document);
    /// Colour of patch K with the highlights of the patch regime; call once per patch drawn, in rising order.
    Colour next(std::int32_t patch);

private:
    const DocumentState& document_;
    std::vector<bool> inBlock_;
    std::int32_t base_ = 0;
    Colour last_;
};

/// The unit normal that list 2 gives grid point (n, m) of a patch: from its four diagonal neighbours, clamped at the
/// borders. No numbers where they coincide.
zVec<double> gridNormal(const std::vector<std::vector<zVec<double>>>& patch, std::size_t n, std::size_t m);

} // namespace velmora
