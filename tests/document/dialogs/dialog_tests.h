#pragma once

#include <cmath>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DialogValues.h"
#include "command_rig.h"
#include "looks.h"

namespace velmora::test {

/// The title of a dialog with its start values, then its fields, each in one line: "key | label | type | start |
/// range", of a radio group its choices in place of the range.
std::vector<std::string> linesOf(const char* name);

/// The keys of the fields that are live.
std::vector<std::string> liveFields(const DialogForm& form);

/// One choice of a dialog in a command, and what comes of it.
struct Choice {
    std::string dialog;
    std::string field;
    int value = 0;
    std::string command;
    PatchList model = {};
    Steps before = {};
    Fields first = {};  ///< of the same dialog, set before the choice
    Fields fields = {}; ///< and after it
    std::vector<std::string> files = {};
    Look look;
    std::string expected;
    std::string when = {};
};

void PrintTo(const Choice& choice, std::ostream* out);

using Choices = std::vector<Choice>;

// What each file of dialogs tells of their choices.

extern const Choices rebreakChoices;
extern const Choices gridChoices;
extern const Choices sectionChoices;
extern const Choices transformChoices;
extern const Choices convertChoices;
extern const Choices exchangeChoices;

/// Runs a command with one choice of its dialog.
class DialogChoice : public CommandRig, public testing::WithParamInterface<Choice> {
protected:
    DialogChoice();

    void holdTiltedPlate();
};

/// The choice as the name of a test.
std::string nameOf(const testing::TestParamInfo<Choice>& info);

// ---- Models and looks of several files ------------------------------------------------------------------------------

using Vector = zVec<double>;

/// Whether the points of a section lie on the chords of the zigzag that it was.
inline Look onChords(std::size_t section) {
    return [=](DocumentState& doc) {
        for (const Vector& p : doc.patches.at(0).at(section)) {
            const double foot = std::fmod(p.x, 2.0);
            if (std::abs(p.z - (foot < 1 ? foot : 2 - foot)) > 1e-9) {
                return "off the chords";
            }
        }
        return "on the chords";
    };
}

inline Patch zigzag() {
    Patch patch = flatPatch(3, 5);
    for (PointList& points : patch) {
        points[1].z = points[3].z = 1;
    }
    return patch;
}

/// Steps of 1 along x, but the last step of the section in the middle is 5.
inline Patch uneven() {
    Patch patch = flatPatch(3, 5);
    patch[1][4].x = 8;
    return patch;
}

/// A second plate whose first section lies on the last of `first`; its points have steps of 2.
inline Patch behind() {
    Patch patch = flatPatch(2, 5);
    for (PointList& points : patch) {
        for (Vector& p : points) {
            p = {2 * p.x, p.y + 2, 0};
        }
    }
    return patch;
}

} // namespace velmora::test
