#pragma once

#include <sstream>
#include <string>

#include "PatchList.h"

namespace velmora::test {

/// An .apt file of regular patches, coordinates as short as they can be.
inline std::string aptText(const PatchList& list) {
    std::ostringstream text;
    for (const Patch& patch : list) {
        text << patch.size() << ' ' << patch.front().size() << '\n';
        for (const PointList& section : patch) {
            for (const zVec<double>& p : section) {
                text << p.x << ' ' << p.y << ' ' << p.z << '\n';
            }
        }
    }
    return text.str();
}

/// An .skl file.
inline std::string sklText(const PatchList& list) {
    std::ostringstream text;
    for (const Patch& patch : list) {
        text << patch.size() << '\n';
        for (const PointList& section : patch) {
            text << section.size() << '\n';
            for (const zVec<double>& p : section) {
                text << p.x << ' ' << p.y << ' ' << p.z << '\n';
            }
        }
    }
    return text.str();
}

/// A good compartment of 2 by 2 points, then one whose last point is no point.
inline const char* const brokenSecondCompartment = "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n"
                                                   "2 2\n0 0 1\n1 0 1\n0 1 1\n1 one 1\n";

} // namespace velmora::test
