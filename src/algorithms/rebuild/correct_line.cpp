#include "correct_line.h"

#include <algorithm>
#include <cmath>

#include "patch_curves.h"
#include "patch_order.h"
#include "vectors.h"

namespace velmora {

namespace {

/// Where a section is cut in two: point `at` ends the first part and begins the second.
struct Cut {
    std::int32_t before; ///< points of the section in front of the cut
    std::int32_t behind; ///< the first point of the section behind it
    zVec<double> at;
};

Cut cutAtPoint(const PointList& section, std::int32_t point) {
    return {point, point + 1, section[static_cast<std::size_t>(point)]};
}

/// The cut that lies `shift` behind point `from`, on the section's chords; at its last point where it is too short.
Cut cutBehind(const PointList& section, std::int32_t from, double shift) {
    double walked = 0;
    for (std::int32_t k = from + 1; k < countOf(section); ++k) {
        const zVec<double>& start = section[static_cast<std::size_t>(k - 1)];
        const zVec<double>& end = section[static_cast<std::size_t>(k)];
        const double length = distance(end, start);
        if (walked + length >= shift) {
            return {k, k, length > 0 ? start + (end - start) * ((shift - walked) / length) : start};
        }
        walked += length;
    }
    return cutAtPoint(section, countOf(section) - 1);
}

/// Gives one section after the other its new points.
class SectionCutter {
public:
    SectionCutter(std::int32_t before, std::int32_t after) : before_(before), after_(after) {}

    void run(PointList& section, const Cut& cut) {
        rebuilt_.clear();
        respacer_.clear();
        addPoints(section.begin(), section.begin() + cut.before);
        respacer_.add(cut.at);
        appendEqualSteps(before_, 0);
        respacer_.clear();
        respacer_.add(cut.at);
        addPoints(section.begin() + cut.behind, section.end());
        appendEqualSteps(after_, 1); // the cut itself ended the first part
        section = rebuilt_;
    }

private:
    void addPoints(PointList::const_iterator from, PointList::const_iterator to) {
        std::for_each(from, to, [this](const zVec<double>& p) { respacer_.add(p); });
    }
    /// A part of one point gives copies of it.
    void appendEqualSteps(std::int32_t count, std::int32_t first) {
        if (respacer_.count() >= 3) {
            respacer_.dropCoincident();
        }
        respacer_.respace(true, count, 1.0, 0);
        for (std::int32_t i = first; i < count; ++i) {
            rebuilt_.push_back(respacer_.output(i));
        }
    }

    std::int32_t before_;
    std::int32_t after_;
    Respacer respacer_;
    PointList rebuilt_;
};

/// Bends the line through the point of section 0, which comes before the line; the last section keeps the line's place.
void bendFromFirst(Patch& patch, const LineBend& bend) {
    const std::int32_t last = countOf(patch) - 1;
    const std::vector<double> along = ConstPatchCurve(patch, true, bend.line).law();
    const PointList& lastSection = patch.back();
    double whole = 0;
    for (auto j = static_cast<std::size_t>(bend.point); j < static_cast<std::size_t>(bend.line); ++j) {
        whole += distance(lastSection[j + 1], lastSection[j]);
    }
    SectionCutter cutter(bend.before, bend.after);
    for (std::int32_t i = 1; i < last; ++i) {
        PointList& section = patch[static_cast<std::size_t>(i)];
        // A line of no length has no parts, and dividing by it gives no numbers: the number of the section takes their
        // place.
        const double part =
            along.back() > 0 ? along[static_cast<std::size_t>(i)] / along.back() : static_cast<double>(i) / last;
        cutter.run(section, cutBehind(section, bend.point, std::pow(part, bend.power) * whole));
    }
    cutter.run(patch.front(), cutAtPoint(patch.front(), bend.point));
    cutter.run(patch.back(), cutAtPoint(patch.back(), bend.line));
}

void bendFromLast(Patch& patch, const LineBend& bend) {
    std::reverse(patch.begin(), patch.end());
    bendFromFirst(patch, bend);
    std::reverse(patch.begin(), patch.end());
}

/// The point comes before the line.
void bendFromSection(Patch& patch, std::int32_t section, const LineBend& bend) {
    if (section == 0) {
        bendFromFirst(patch, bend);
        return;
    }
    if (section == countOf(patch) - 1) {
        bendFromLast(patch, bend);
        return;
    }
    Patch second(patch.begin() + section, patch.end());
    patch.erase(patch.begin() + section + 1, patch.end());
    bendFromLast(patch, bend);
    bendFromFirst(second, bend);
    patch.insert(patch.end(), second.begin() + 1, second.end());
}

} // namespace

bool correctLine(Patch& patch, std::int32_t section, const LineBend& bend) {
    const std::int32_t points = lineCount(patch);
    const auto inSection = [points](std::int32_t j) { return j >= 0 && j < points; };
    if (!isGrid(patch) || countOf(patch) < 2 || section < 0 || section >= countOf(patch) || !inSection(bend.point) ||
        !inSection(bend.line) || bend.point == bend.line || bend.before < 1 || bend.after < 1) {
        return false;
    }
    if (bend.point < bend.line) {
        bendFromSection(patch, section, bend);
        return true;
    }
    reverseLines(patch);
    bendFromSection(patch, section,
                    {points - 1 - bend.point, points - 1 - bend.line, bend.after, bend.before, bend.power});
    reverseLines(patch);
    return true;
}

} // namespace velmora
