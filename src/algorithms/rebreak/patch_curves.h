#pragma once

#include <cstdint>
#include <type_traits>
#include <vector>

#include "PatchList.h"
#include "Respacer.h"

namespace velmora {

/// Whether every section has the same number of points, one at least, so that lines run through the whole patch. One
/// section alone is a grid here.
bool isGrid(const Patch& patch);

/// A section or a line of a patch as a curve. The patch must hold all points of it and keep its shape.
template <class PatchType>
class CurveOf {
public:
    CurveOf(PatchType& patch, bool line, std::int32_t index)
        : patch_(&patch), line_(line), index_(static_cast<std::size_t>(index)) {}

    std::int32_t count() const { return line_ ? countOf(*patch_) : countOf((*patch_)[index_]); }
    auto& operator[](std::int32_t i) const {
        const auto k = static_cast<std::size_t>(i);
        return line_ ? (*patch_)[k][index_] : (*patch_)[index_][k];
    }

    /// Its points, copied.
    PointList points() const {
        PointList list;
        const std::int32_t size = count();
        list.reserve(static_cast<std::size_t>(size));
        for (std::int32_t i = 0; i < size; ++i) {
            list.push_back((*this)[i]);
        }
        return list;
    }
    /// Running chord length, from 0 to the curve's length.
    std::vector<double> law() const {
        return runningLength(static_cast<std::size_t>(count()),
                             [this](std::size_t i) { return (*this)[static_cast<std::int32_t>(i)]; });
    }
    /// Makes the curve the input of `respacer`.
    void give(Respacer& respacer) const {
        respacer.clear();
        const std::int32_t points = count();
        for (std::int32_t i = 0; i < points; ++i) {
            respacer.add((*this)[i]);
        }
    }
    /// Takes as many outputs as the curve has points.
    void take(const Respacer& respacer) const {
        const std::int32_t points = count();
        for (std::int32_t i = 0; i < points; ++i) {
            (*this)[i] = respacer.output(i);
        }
    }

private:
    PatchType* patch_;
    bool line_;
    std::size_t index_;
};

using PatchCurve = CurveOf<Patch>;
using ConstPatchCurve = CurveOf<const Patch>;

} // namespace velmora
