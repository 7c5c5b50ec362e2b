#include "line_triangle_loose.h"
#include "line_triangle_strict.h"
#include "print_values.h"

namespace velmora {

namespace {

constexpr std::size_t numbersOfTriangleTest = 15; // three corners, direction, origin

} // namespace

PrintedValue kernelValue(std::span<const std::string> words) {
    if (words.empty() || (words[0] != "intersectLineTriangle" && words[0] != "lineHitsTriangle")) {
        return ScriptFailure{"there is no such kernel",
                             "print kernel intersectLineTriangle or lineHitsTriangle with fifteen numbers"};
    }
    const auto numbers = parseReals(words.subspan(1), numbersOfTriangleTest);
    if (!numbers) {
        return ScriptFailure{"the kernel " + inQuotes(words[0]) + " takes fifteen numbers",
                             "give the three corners, the direction and the origin, each as X Y Z"};
    }
    const double* n = numbers->data();
    if (words[0] == "lineHitsTriangle") {
        const auto vec = [n](std::size_t i) { return zVec<double>(n[i], n[i + 1], n[i + 2]); };
        const TriangleHit hit = LineHitsTriangle(vec(0), vec(3), vec(6), vec(9), vec(12));
        return Json{{"code", hit.code}, {"hit", pointValue(hit.point)}};
    }
    double place[3] = {0.0, 0.0, 0.0};
    const int code = IntersectLineTriangle(n, n + 3, n + 6, n + 9, n + 12, place);
    return Json{{"code", code}, {"hit", pointValue({place[0], place[1], place[2]})}};
}

} // namespace velmora
