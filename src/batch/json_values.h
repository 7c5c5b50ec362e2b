#pragma once

#include <nlohmann/json.hpp>
#include <optional>

#include "DialogForm.h"
#include "KeptList.h"
#include "PatchList.h"
#include "camera.h"

namespace velmora {

/// Values as they are printed. Objects keep the order in which their members are set.
using Json = nlohmann::ordered_json;

/// A number; one that is not finite as the string "nan", "inf" or "-inf".
Json numberValue(double value);
/// The same, and null for none.
Json maybeNumberValue(const std::optional<double>& value);
/// [x, y, z].
Json pointValue(const zVec<double>& point);
Json numbersValue(const std::vector<double>& numbers);
/// A list of points.
Json pointsValue(const PointList& points);
/// Nested lists [K][N][M][x, y, z].
Json patchesValue(const PatchList& patches);
Json patchesValue(const KeptPatches& patches);
/// The sixteen elements in column-major order.
Json matrixValue(const Matrix4& matrix);
/// The fields of a dialog in their order, read-only ones too; check boxes as 0 or 1.
Json fieldsValue(const DialogForm& form);

} // namespace velmora
