#include "curve_values.h"
#include "print_values.h"

namespace velmora {

namespace {

Json maybeNumbers(const std::vector<MaybeValue>& values) {
    Json list = Json::array();
    for (const MaybeValue& value : values) {
        list.push_back(maybeNumberValue(value));
    }
    return list;
}

} // namespace

Json curveValue(VelmoraDoc& doc) {
    const CurveValues values = curveValues(doc.curveInHand());
    return {{"points", pointsValue(values.points)},
            {"steps", numbersValue(values.steps)},
            {"growth", maybeNumbers(values.growth)},
            {"curvature", maybeNumbers(values.curvature)},
            {"length", numbersValue(values.length)}};
}

} // namespace velmora
