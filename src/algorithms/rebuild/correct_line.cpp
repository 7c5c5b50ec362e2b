#include "correct_line.h"

#include <algorithm>
#include <cmath>

#include "carried_values.h"
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

    /// The points take their `values`, if there are any, along.
    void run(PointList& section, const Cut& cut, PointList* values) {
        if (values != nullptr) {
            carry(section, cut, *values);
        }
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
    /// Both parts have their points at equal steps: so the values stand at equal parts of each.
    void carry(const PointList& section, const Cut& cut, PointList& values) const {
        values.resize(section.size());
        PointList first(section.begin(), section.begin() + cut.before);
        PointList second(section.begin() + cut.behind, section.end());
        PointList valuesOfFirst(values.begin(), values.begin() + cut.before);
        PointList valuesOfSecond(values.begin() + cut.behind, values.end());
        const zVec<double> atCut = valueAt(section, cut, values);
        first.push_back(cut.at);
        valuesOfFirst.push_back(atCut);
        second.insert(second.begin(), cut.at);
        valuesOfSecond.insert(valuesOfSecond.begin(), atCut);
        values = valuesAlong(first, valuesOfFirst, progressionFractions(before_, 1.0));
        if (values.size() == 1) {
            values.front() = valuesOfFirst.front(); // as of the points: one output is the part's first point
        }
        const PointList behind = valuesAlong(second, valuesOfSecond, progressionFractions(after_, 1.0));
        values.insert(values.end(), behind.begin() + 1, behind.end());
    }
    static zVec<double> valueAt(const PointList& section, const Cut& cut, const PointList& values) {
        if (cut.behind > cut.before || cut.before == 0) {
            return values[static_cast<std::size_t>(cut.before)]; // the cut is a point of the section
        }
        const auto end = static_cast<std::size_t>(cut.before);
        const double chord = distance(section[end], section[end - 1]);
        const double part = chord > 0 ? distance(cut.at, section[end - 1]) / chord : 0.0;
        return values[end - 1] + (values[end] - values[end - 1]) * part;
    }
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
void bendFromFirst(Patch& patch, const LineBend& bend, Patch* values) {
    const std::int32_t last = countOf(patch) - 1;
    const std::vector<double> along = ConstPatchCurve(patch, true, bend.line).law();
    const PointList& lastSection = patch.back();
    double whole = 0;
    for (auto j = static_cast<std::size_t>(bend.point); j < static_cast<std::size_t>(bend.line); ++j) {
        whole += distance(lastSection[j + 1], lastSection[j]);
    }
    SectionCutter cutter(bend.before, bend.after);
    const auto valuesOf = [values](std::int32_t section) {
        return values != nullptr ? &(*values)[static_cast<std::size_t>(section)] : nullptr;
    };
    for (std::int32_t i = 1; i < last; ++i) {
        PointList& section = patch[static_cast<std::size_t>(i)];
        // A line of no length has no parts, and dividing by it gives no numbers: the number of the section takes their
        // place.
        const double part =
            along.back() > 0 ? along[static_cast<std::size_t>(i)] / along.back() : static_cast<double>(i) / last;
        cutter.run(section, cutBehind(section, bend.point, std::pow(part, bend.power) * whole), valuesOf(i));
    }
    cutter.run(patch.front(), cutAtPoint(patch.front(), bend.point), valuesOf(0));
    cutter.run(patch.back(), cutAtPoint(patch.back(), bend.line), valuesOf(last));
}

void reverseSectionsOf(Patch& patch, Patch* values) {
    std::reverse(patch.begin(), patch.end());
    if (values != nullptr) {
        std::reverse(values->begin(), values->end());
    }
}

void bendFromLast(Patch& patch, const LineBend& bend, Patch* values) {
    reverseSectionsOf(patch, values);
    bendFromFirst(patch, bend, values);
    reverseSectionsOf(patch, values);
}

/// Cuts the sections from `section` on off; the section itself stands in both parts.
Patch takeSecondPart(Patch& patch, std::int32_t section) {
    Patch second(patch.begin() + section, patch.end());
    patch.erase(patch.begin() + section + 1, patch.end());
    return second;
}

/// The point comes before the line.
void bendFromSection(Patch& patch, std::int32_t section, const LineBend& bend, Patch* values) {
    if (section == 0) {
        bendFromFirst(patch, bend, values);
        return;
    }
    if (section == countOf(patch) - 1) {
        bendFromLast(patch, bend, values);
        return;
    }
    Patch second = takeSecondPart(patch, section);
    Patch secondValues = values != nullptr ? takeSecondPart(*values, section) : Patch();
    bendFromLast(patch, bend, values);
    bendFromFirst(second, bend, values != nullptr ? &secondValues : nullptr);
    patch.insert(patch.end(), second.begin() + 1, second.end());
    if (values != nullptr) {
        values->insert(values->end(), secondValues.begin() + 1, secondValues.end());
    }
}

} // namespace

bool correctLine(Patch& patch, std::int32_t section, const LineBend& bend, Patch* values) {
    const std::int32_t points = lineCount(patch);
    const auto inSection = [points](std::int32_t j) { return j >= 0 && j < points; };
    if (!isGrid(patch) || countOf(patch) < 2 || section < 0 || section >= countOf(patch) || !inSection(bend.point) ||
        !inSection(bend.line) || bend.point == bend.line || bend.before < 1 || bend.after < 1) {
        return false;
    }
    if (bend.point < bend.line) {
        bendFromSection(patch, section, bend, values);
        return true;
    }
    const auto reverseBoth = [&patch, values] {
        reverseLines(patch);
        if (values != nullptr) {
            reverseLines(*values);
        }
    };
    reverseBoth();
    bendFromSection(patch, section,
                    {points - 1 - bend.point, points - 1 - bend.line, bend.after, bend.before, bend.power}, values);
    reverseBoth();
    return true;
}

} // namespace velmora
