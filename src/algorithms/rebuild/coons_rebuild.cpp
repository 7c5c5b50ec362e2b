#include "coons_rebuild.h"

#include "curve_tolerances.h"
#include "patch_curves.h"
#include "vectors.h"

namespace velmora {

namespace {

/// Parameters of the points of a border section in parts of its length.
std::vector<double> sectionParameters(const Patch& patch, std::int32_t section) {
    std::vector<double> a = ConstPatchCurve(patch, false, section).law();
    const double total = a.back();
    for (std::size_t j = 1; j < a.size(); ++j) {
        // Without a length the count starts at the second point: wanted.
        a[j] =
            !(total > shortLineLength) ? static_cast<double>(j - 1) / static_cast<double>(a.size() - 1) : a[j] / total;
    }
    return a;
}

/// The parameter along an end line, section by section.
class EndLine {
public:
    EndLine(const Patch& patch, std::int32_t line)
        : curve_(patch, true, line), length_(curve_.law().back()), last_(curve_.count() - 1) {}

    /// Goes on to section i, one at a time from section 1 on.
    double advanceTo(std::int32_t i) {
        if (!(length_ > shortLineLength)) {
            s_ = static_cast<double>(i - 1) / last_;
        } else {
            s_ += distance(curve_[i], curve_[i - 1]) / length_;
        }
        return s_;
    }
    /// What point i of the line has beyond the straight blend of its ends.
    zVec<double> excess(std::int32_t i) const { return curve_[i] - curve_[0] * (1 - s_) - curve_[last_] * s_; }

private:
    ConstPatchCurve curve_;
    double length_;
    std::int32_t last_;
    double s_ = 0;
};

} // namespace

void coonsRebuild(Patch& patch) {
    const std::int32_t sections = countOf(patch);
    if (!isGrid(patch) || sections < 3 || lineCount(patch) < 3) {
        return;
    }
    const std::vector<double> a = sectionParameters(patch, 0);
    const std::vector<double> b = sectionParameters(patch, sections - 1);
    const PointList& first = patch.front();
    const PointList& last = patch.back();
    EndLine line0(patch, 0);
    EndLine line1(patch, lineCount(patch) - 1);
    for (std::int32_t i = 1; i < sections - 1; ++i) {
        const double s0 = line0.advanceTo(i);
        const double s1 = line1.advanceTo(i);
        const double e = s1 - s0;
        const zVec<double> excess0 = line0.excess(i);
        const zVec<double> excess1 = line1.excess(i);
        PointList& section = patch[static_cast<std::size_t>(i)];
        for (std::size_t j = 1; j + 1 < section.size(); ++j) {
            const double d = b[j] - a[j];
            const double D = 1 - e * d;
            if (D == 0) {
                continue; // the parameter lines are parallel: dividing would put numbers into the model that are none
            }
            const double u = (a[j] + d * s0) / D;
            const double w = (s0 + e * a[j]) / D;
            section[j] = first[j] * (1 - w) + last[j] * w + excess1 * u + excess0 * (1 - u);
        }
    }
}

} // namespace velmora
