#pragma once

#include <cstdint>
#include <vector>

#include "patch_curves.h"

namespace velmora {

/// Gives curve after curve the spacing of another one.
class LawRegridder {
public:
    /// `law` is the running chord length along the curve to be followed.
    explicit LawRegridder(std::vector<double> law) : law_(std::move(law)) {}

    /// Moves the curve's points along its spline, or along its chords where neighbours coincide; four points or more
    /// follow the law, fewer get equal steps. A curve of another number of points stays, and so do all curves when the
    /// law has no length: it says nothing about the spacing then.
    /// `values`, if there are any, belong to the points of the curve one by one and go along.
    void regrid(const PatchCurve& curve, const PatchCurve* values = nullptr);

private:
    std::vector<double> law_;
    Respacer respacer_;
};

/// Re-spaces a section or line of a patch, and `values` of its shape with it if there are any.
void regridCurve(LawRegridder& regridder, Patch& patch, Patch* values, bool line, std::int32_t index);

/// Gives every other section the spacing of section `j`, which must exist. `values`, if there are any, have the shape
/// of the patch; they go along with its points.
void regridLikeSection(Patch& patch, std::int32_t j, Patch* values = nullptr);
/// Gives every other line the spacing of line `j`, on which every section must have a point. Lines that do not run
/// through the whole patch stay.
void regridLikeLine(Patch& patch, std::int32_t j, Patch* values = nullptr);

} // namespace velmora
