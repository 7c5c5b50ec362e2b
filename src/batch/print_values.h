#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "ScriptFailure.h"
#include "VelmoraView.h"
#include "json_values.h"

namespace velmora {

struct DocumentState;

/// A value, or why there is none.
using PrintedValue = std::variant<Json, ScriptFailure>;

/// Bytes that a list of the model or the picture takes while it is printed, as values and as text; 0 for a value that
/// is small whatever the model.
double printedBytes(std::string_view name, const DocumentState& doc, VelmoraView& view);

/// Why a value is not printed that the memory does not hold.
ScriptFailure tooLargeToPrint(const std::string& what);

/// What a print line shows. `words` names it: at least one word, then its arguments. Nothing changes. A value that
/// takes more than half of the free memory is refused.
PrintedValue printedValue(std::span<const std::string> words, DocumentState& doc, VelmoraView& view);

// The families of values. Indices count from 0, with -1 for none.

/// Kinds, paths, regimes, captures, flags and counts of the document.
Json stateValue(const DocumentState& doc, const VelmoraView& view);
/// The list of that name: nested patches, points or zones; none for an unknown name.
std::optional<Json> geometryValue(std::string_view name, const DocumentState& doc);
/// Every command id with true (on) or false.
Json commandsValue(const DocumentState& doc, const VelmoraView& view);
/// The versions of the program and of the scripts' grammar, and whether pictures of pixels can be drawn.
Json versionValue(bool picture);
/// The stored values of a parameter dialog.
PrintedValue dialogValue(const std::string& name, DocumentState& doc);
/// The camera, the spin and the matrices in force.
Json viewValue(const VelmoraView& view);
/// What was built to be drawn.
Json sceneValue(VelmoraView& view);
/// What was drawn beside the scene in the last frame.
Json overlayValue(const VelmoraView& view);
/// Where the model point of three words stands in the view: [x, y, depth], or empty when it has no image.
PrintedValue windowValue(std::span<const std::string> words, VelmoraView& view, const DocumentState& doc);
/// Counts, sizes and the quality of the model; its places count from 1.
Json reportValue(const DocumentState& doc);
/// How the points of the captured curve, else of the line buffer are set.
Json curveValue(DocumentState& doc);
/// What the last Compare found; null before the first one and once the geometry is another one.
Json comparisonValue(const DocumentState& doc);
/// Distance, length and angle between the two or three places that the words name.
PrintedValue measuredValue(std::span<const std::string> words, const DocumentState& doc);
/// {"code", "hit"} of the kernel and the fifteen numbers in `words`.
PrintedValue kernelValue(std::span<const std::string> words);

/// The words as finite numbers; none unless there are `count` of them.
std::optional<std::vector<double>> parseReals(std::span<const std::string> words, std::size_t count);

} // namespace velmora
