#include "close_boxes.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "vectors.h"

namespace velmora {

namespace {

using Corners = std::array<zVec<double>, 3>;

/// Boxes of so many times the area of what they hold are nearly empty.
constexpr double emptyPart = 32.0;
/// Below this part of the box about all, a box overlaps hardly any other.
constexpr double smallPart = 1.0 / 65536.0;
/// So many pieces make a tree that is built in about a second; and so many of a triangle leave its build the smaller
/// part of the work.
constexpr double mostPieces = 1e6;
constexpr double mostPiecesEach = 12.0;

/// Half of the surface of a box: what a line or a point meets of it.
double extentOf(const FrameBox& box) {
    const double x = box.upper[0] - box.lower[0];
    const double y = box.upper[1] - box.lower[1];
    const double z = box.upper[2] - box.lower[2];
    return x * y + y * z + z * x;
}

double areaOf(const Corners& corners) {
    return 0.5 * lengthOf(cross(corners[1] - corners[0], corners[2] - corners[0]));
}

/// The corner from which the longest side leads to the next one.
std::size_t longestSide(const Corners& corners) {
    std::size_t longest = 0;
    double square = -1.0;
    for (std::size_t i = 0; i < 3; ++i) {
        const double other = squaredDistance(corners[i], corners[(i + 1) % 3]);
        if (other > square) {
            square = other;
            longest = i;
        }
    }
    return longest;
}

/// The direction in which most of the longest sides run, each as often as its square says: the first axis of all of
/// them, by repeated multiplication.
zVec<double> mainDirection(const std::vector<std::int32_t>& triangles, const CornersOf& cornersOf) {
    constexpr int rounds = 32;
    std::array<zVec<double>, 3> matrix;
    for (const std::int32_t triangle : triangles) {
        const Corners corners = cornersOf(triangle);
        const std::size_t side = longestSide(corners);
        const zVec<double> along = corners[(side + 1) % 3] - corners[side];
        matrix[0] = matrix[0] + along * along.x;
        matrix[1] = matrix[1] + along * along.y;
        matrix[2] = matrix[2] + along * along.z;
    }
    zVec<double> direction =
        *std::max_element(matrix.begin(), matrix.end(),
                          [](const zVec<double>& a, const zVec<double>& b) { return dot(a, a) < dot(b, b); });
    for (int round = 0; round < rounds; ++round) {
        direction = unitOf(direction);
        direction = {dot(matrix[0], direction), dot(matrix[1], direction), dot(matrix[2], direction)};
    }
    return unitOf(direction);
}

BoxFrame frameAlong(const zVec<double>& direction) {
    const double x = std::abs(direction.x);
    const double y = std::abs(direction.y);
    const double z = std::abs(direction.z);
    const zVec<double> farthest = x <= y && x <= z ? zVec<double>(1, 0, 0)
                                  : y <= z         ? zVec<double>(0, 1, 0)
                                                   : zVec<double>(0, 0, 1);
    const zVec<double> second = unitOf(cross(direction, farthest));
    return BoxFrame({direction, second, cross(direction, second)});
}

/// What the boxes of all triangles come to in a frame.
struct Sum {
    double extents = 0.0;
    double areas = 0.0;
    double roots = 0.0; ///< square roots of the extents of nearly empty boxes
    FrameBox all{{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
                  std::numeric_limits<double>::infinity()},
                 {-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                  -std::numeric_limits<double>::infinity()}};

    bool nearlyEmpty() const { return extents > emptyPart * areas && std::isfinite(extents); }
};

Sum sumIn(const BoxFrame& frame, const std::vector<std::int32_t>& triangles, const CornersOf& cornersOf) {
    Sum sum;
    for (const std::int32_t triangle : triangles) {
        const Corners corners = cornersOf(triangle);
        const FrameBox box = frame.boxOf(corners);
        const double extent = extentOf(box);
        const double area = areaOf(corners);
        sum.extents += extent;
        sum.areas += area;
        sum.roots += extent > emptyPart * area ? std::sqrt(extent) : 0.0;
        for (std::size_t i = 0; i < 3; ++i) {
            sum.all.lower[i] = std::min(sum.all.lower[i], box.lower[i]);
            sum.all.upper[i] = std::max(sum.all.upper[i], box.upper[i]);
        }
    }
    return sum;
}

/// Up to some thousands of them, from all over.
std::vector<std::int32_t> someOf(const std::vector<std::int32_t>& triangles) {
    constexpr std::size_t enough = 4096;
    const std::size_t step = triangles.size() / enough + 1;
    std::vector<std::int32_t> some;
    for (std::size_t i = 0; i < triangles.size(); i += step) {
        some.push_back(triangles[i]);
    }
    return some;
}

/// A triangle as a strip along its longest side: at each part of the way from one end of that side to the other, a
/// short line leads across to the way by the third corner.
class Strip {
public:
    explicit Strip(const Corners& corners) {
        const std::size_t side = longestSide(corners);
        begin_ = corners[side];
        end_ = corners[(side + 1) % 3];
        third_ = corners[(side + 2) % 3];
        const zVec<double> along = end_ - begin_;
        passesThird_ = std::clamp(dot(third_ - begin_, along) / dot(along, along), 0.0, 1.0);
    }

    /// The box of what lies between two parts of the way.
    FrameBox boxBetween(double from, double to, const BoxFrame& frame) const {
        FrameBox box = frame.boxOf({across(from), onSide(from), onSide(to)});
        const bool third = from < passesThird_ && passesThird_ < to;
        const FrameBox rest = frame.boxOf({across(to), third ? third_ : across(to), across(to)});
        for (std::size_t i = 0; i < 3; ++i) {
            box.lower[i] = std::min(box.lower[i], rest.lower[i]);
            box.upper[i] = std::max(box.upper[i], rest.upper[i]);
        }
        return box;
    }

private:
    static zVec<double> between(const zVec<double>& a, const zVec<double>& b, double part) {
        return a * (1.0 - part) + b * part;
    }
    zVec<double> onSide(double part) const { return between(begin_, end_, part); }
    zVec<double> across(double part) const {
        return part < passesThird_  ? between(begin_, third_, part / passesThird_)
               : passesThird_ < 1.0 ? between(third_, end_, (part - passesThird_) / (1.0 - passesThird_))
                                    : third_;
    }

    zVec<double> begin_, end_, third_;
    double passesThird_ = 0.0; ///< the part of the way beside which the third corner stands
};

/// Into how many pieces of equal length a triangle is cut, so that their boxes are small or filled. A box whose extent
/// is f times that of another has the root of f of its length, and loses by each cut that part of its emptiness.
int pieceCount(double extent, double area, double smallExtent) {
    constexpr double mostOfOne = 4096.0;
    const double bySize = std::sqrt(extent / smallExtent);
    const double byEmptiness = area > 0.0 ? extent / (emptyPart * area) : mostOfOne;
    const double count = std::min({bySize, byEmptiness, mostOfOne});
    return count > 1.0 ? static_cast<int>(std::ceil(count)) : 1;
}

void cut(std::int32_t triangle, const Corners& corners, double smallExtent, CloseBoxes& boxes) {
    const int count = pieceCount(extentOf(boxes.frame.boxOf(corners)), areaOf(corners), smallExtent);
    if (count == 1) {
        return;
    }
    const Strip strip(corners);
    for (int piece = 0; piece < count; ++piece) {
        boxes.pieces.push_back({triangle, strip.boxBetween(static_cast<double>(piece) / count,
                                                           static_cast<double>(piece + 1) / count, boxes.frame)});
    }
}

} // namespace

CloseBoxes closeBoxes(const std::vector<std::int32_t>& triangles, const CornersOf& cornersOf) {
    constexpr double muchLess = 0.25;
    CloseBoxes boxes;
    // Most models have no slivers to speak of, which some triangles here and there tell.
    if (!sumIn(boxes.frame, someOf(triangles), cornersOf).nearlyEmpty()) {
        return boxes;
    }
    Sum sum = sumIn(boxes.frame, triangles, cornersOf);
    const BoxFrame along = frameAlong(mainDirection(triangles, cornersOf));
    const Sum turned = sumIn(along, triangles, cornersOf);
    if (turned.extents < muchLess * sum.extents) {
        boxes.frame = along;
        sum = turned;
    }
    if (!sum.nearlyEmpty()) {
        return boxes;
    }
    const double pieces = std::min(mostPieces, mostPiecesEach * static_cast<double>(triangles.size()));
    const double affordable = sum.roots / pieces;
    const double smallExtent = std::max(smallPart * extentOf(sum.all), affordable * affordable);
    for (const std::int32_t triangle : triangles) {
        cut(triangle, cornersOf(triangle), smallExtent, boxes);
    }
    return boxes;
}

} // namespace velmora
