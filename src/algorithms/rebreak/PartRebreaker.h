#pragma once

#include <cstdint>

#include "PatchList.h"
#include "Respacer.h"

namespace velmora {

/// How the stretch of a section on one side of a point is re-spaced. Points count from 1.
struct PartLaw {
    bool linear = false;        ///< along the chords; else along the spline
    bool fit = false;           ///< search for the compression that runs on into the points that stay
    bool after = false;         ///< the stretch begins at the point and ends the section; else it ends at the point
    std::int32_t exactness = 0; ///< percent of the stretch's length, spline only
    std::int32_t newCount = 2;
    double compression = 1.0; ///< last step divided by first step; where a search starts
    std::int32_t firstPoint = 1;
    std::int32_t lastPoint = 1;
    /// A stretch of no length becomes newCount copies of its point, so that a grid keeps sections of one length; else
    /// its section stays.
    bool keepGrid = false;
};

struct PartResult {
    bool hasLength = true; ///< the stretch has two points or more and a length
    bool rebuilt = false;  ///< the stretch has `newCount` points now
    bool fitted = true;    ///< a search ended on a compression that fits
};

/// Rebuilds the stretch of one section after the other by one law.
class PartRebreaker {
public:
    explicit PartRebreaker(const PartLaw& law) : law_(law) {}

    /// The stretch is cut to the section's own end. A search that fails leaves the compression that it reached.
    PartResult rebuild(PointList& section);

private:
    double fittingCompression(double near, double next, bool& fitted);
    void replaceStretch(PointList& section, std::int32_t last);

    PartLaw law_;
    Respacer respacer_;
    PointList rebuilt_;
};

} // namespace velmora
