#include "CIntersection.h"

namespace velmora {

namespace {

constexpr double leastPoints = 2;
constexpr double mostPoints = 1000000;

} // namespace

DialogForm describe(CIntersection& values) {
    const std::string inside = "Patches in Block";
    const std::string outside = "Patches out Block";
    const std::vector<std::string> sides = {"Before intersection", "After intersection"};
    DialogForm form;
    form.name = "CIntersection";
    form.title = "Intersection";
    form.fields = {
        inGroup(radioField("insideSide", values.insideSide, sides), inside),
        inGroup(integerField("insidePoints", "Number of points", values.insidePoints, leastPoints, mostPoints), inside),
        inGroup(radioField("outsideSide", values.outsideSide, sides), outside),
        inGroup(integerField("outsidePoints", "Number of points", values.outsidePoints, leastPoints, mostPoints),
                outside),
        realField("tolerance", "Tolerance", values.tolerance, 1e-12, 1),
    };
    form.focus = "insidePoints";
    form.confirm = [&values](DialogForm&) {
        const auto least = static_cast<std::int32_t>(leastPoints);
        return refuseTooMany({{"insidePoints", values.insidePoints, least, values.inside.bytesEach},
                              {"outsidePoints", values.outsidePoints, least, values.outside.bytesEach}},
                             values.inside.free);
    };
    return form;
}

} // namespace velmora
