#include <algorithm>
#include <array>

#include <gtest/gtest.h>

#include "PartRebreaker.h"
#include "coons_rebuild.h"
#include "correct_line.h"
#include "interpolate_section.h"
#include "match_border.h"
#include "merge_patches.h"
#include "patch_curves.h"
#include "patch_order.h"
#include "random_patches.h"
#include "regrid.h"
#include "smooth_patch.h"
#include "split_patch.h"
#include "surface_reference.h"

namespace velmora::test {

namespace {

using samples::randomPatch;
using samples::sameBits;
using samples::Source;

constexpr int rounds = 1000;

Patch anyPatch(Source& source, int round) {
    return randomPatch(source, source.whole(2, 9), source.whole(2, 9), round % 3 == 0);
}

Patch reversedSections(Patch patch) {
    std::reverse(patch.begin(), patch.end());
    return patch;
}

} // namespace

TEST(SurfaceKernelsAgainstThePlainForm, RebreakPartGivesTheSameSections) {
    Source source(11);
    int fitted = 0;
    for (int round = 0; round < rounds; ++round) {
        const Patch patch = randomPatch(source, 4, source.whole(6, 14), round % 3 == 0);
        const std::int32_t points = countOf(patch[0]);
        PartLaw law;
        law.linear = !source.once(2);
        law.fit = source.once(2);
        law.after = source.once(2);
        law.exactness = source.whole(0, 10);
        law.newCount = source.whole(2, 12);
        law.compression = source.once(5) ? 1 : std::pow(10, source.real(-2, 2));
        const std::int32_t at = law.fit ? source.whole(3, points - 3) : source.whole(1, points);
        law.firstPoint = law.after ? at : 1;
        law.lastPoint = law.after ? points : at;
        const reference::PartFields fields{!law.linear,  law.fit,         law.after,      law.exactness,
                                           law.newCount, law.compression, law.firstPoint, law.lastPoint};
        PartRebreaker rebreaker(law);
        for (const PointList& section : patch) {
            PointList rebuilt = section;
            const PartResult result = rebreaker.rebuild(rebuilt);
            const reference::PartOutcome expected = reference::rebreakPartOf(section, fields);
            ASSERT_TRUE(sameBits(Patch{rebuilt}, Patch{expected.section})) << "round " << round;
            ASSERT_EQ(result.hasLength, !expected.zeroLength) << "round " << round;
            ASSERT_EQ(result.rebuilt, !expected.zeroLength) << "round " << round;
            ASSERT_EQ(result.fitted, !expected.unfitted) << "round " << round;
            fitted += law.fit && result.rebuilt && result.fitted && law.compression != 1 ? 1 : 0;
        }
    }
    EXPECT_GT(fitted, rounds / 10); // the search itself is exercised
}

TEST(SurfaceKernelsAgainstThePlainForm, RegridGivesTheSamePatch) {
    Source source(12);
    for (int round = 0; round < rounds; ++round) {
        const Patch patch = anyPatch(source, round);
        const std::int32_t section = source.whole(0, countOf(patch) - 1);
        const std::int32_t line = source.whole(0, lineCount(patch) - 1);
        Patch sections = patch;
        Patch expectedSections = patch;
        regridLikeSection(sections, section);
        reference::regridSections(expectedSections, static_cast<std::size_t>(section));
        ASSERT_TRUE(sameBits(sections, expectedSections)) << "round " << round;
        Patch lines = patch;
        Patch expectedLines = patch;
        regridLikeLine(lines, line);
        reference::regridLines(expectedLines, static_cast<std::size_t>(line));
        ASSERT_TRUE(sameBits(lines, expectedLines)) << "round " << round;
    }
}

TEST(SurfaceKernelsAgainstThePlainForm, MergeGivesTheSamePatch) {
    Source source(13);
    for (int round = 0; round < rounds; ++round) {
        const std::int32_t common = source.whole(2, 8);
        const bool lines = source.once(2);
        PatchList list;
        for (int k = 0; k < 3; ++k) {
            const std::int32_t other = source.whole(2, 6);
            list.push_back(randomPatch(source, lines ? common : other, lines ? other : common, round % 3 == 0));
        }
        const MergeOptions options{source.once(2), lines && source.once(2)};
        const MergeMembers members{1, {2, 0}};
        const PatchList others = {list[2], list[0]};
        const Patch expected = lines ? reference::mergedByLines(list[1], others, options.matching, options.keepFirst)
                                     : reference::mergedBySections(list[1], others, options.matching);
        ASSERT_TRUE(canMerge(list, members, lines));
        (lines ? appendLines : appendSections)(list, members, options);
        removeMerged(list, members);
        ASSERT_EQ(list.size(), 1U);
        ASSERT_TRUE(sameBits(list[0], expected)) << "round " << round;
    }
}

TEST(SurfaceKernelsAgainstThePlainForm, MatchBorderChoosesTheSamePairAndGivesTheSamePatch) {
    Source source(14);
    int matched = 0;
    for (int round = 0; round < rounds; ++round) {
        const Patch a = anyPatch(source, round);
        Patch b = randomPatch(source, source.whole(2, 9), source.whole(2, 9), round % 3 == 0);
        // One border of b comes near to one of a.
        const BorderPairing near = borderPairing(source.whole(0, 31));
        borderCopy(a, b, near);
        for (PointList& section : b) {
            for (zVec<double>& p : section) {
                p.z += source.real(0, 0.12);
            }
        }
        const bool grid = source.once(2);
        Patch shipped = b;
        Patch plain = b;
        int entry = -1;
        const bool expected = reference::matchPatches(a, plain, grid, entry);
        double gap = 0;
        const auto chosen = nearestBorders(a, b, gap);
        ASSERT_EQ(chosen.value_or(-1), entry) << "round " << round;
        ASSERT_EQ(matchBorder(a, shipped, grid), expected) << "round " << round;
        ASSERT_TRUE(sameBits(shipped, plain)) << "round " << round;
        matched += expected ? 1 : 0;
    }
    EXPECT_GT(matched, rounds / 10);
}

TEST(SurfaceKernelsAgainstThePlainForm, SmoothGivesTheSamePatchAndFunction) {
    Source source(15);
    for (int round = 0; round < rounds; ++round) {
        const Patch patch = anyPatch(source, round);
        int function = source.whole(1, 2);
        bool spline = function == 1;
        Patch shipped = patch;
        Patch plain = patch;
        smoothSections(shipped, spline);
        reference::smoothedSections(plain, function);
        ASSERT_TRUE(sameBits(shipped, plain)) << "sections, round " << round;
        ASSERT_EQ(spline, function == 1) << "round " << round;
        smoothLines(shipped, spline);
        reference::smoothedLines(plain, function);
        ASSERT_TRUE(sameBits(shipped, plain)) << "lines, round " << round;
        ASSERT_EQ(spline, function == 1) << "round " << round;
    }
}

TEST(SurfaceKernelsAgainstThePlainForm, CoonsGivesTheSamePatch) {
    Source source(16);
    for (int round = 0; round < rounds; ++round) {
        const Patch patch = anyPatch(source, round);
        Patch shipped = patch;
        coonsRebuild(shipped);
        ASSERT_TRUE(sameBits(shipped, reference::coonsOf(patch))) << "round " << round;
    }
}

TEST(SurfaceKernelsAgainstThePlainForm, SplitGivesTheSameList) {
    Source source(19);
    for (int round = 0; round < rounds; ++round) {
        const PatchList list = {anyPatch(source, 1), anyPatch(source, 1), anyPatch(source, 1)};
        const auto K = static_cast<std::size_t>(source.whole(0, 2));
        const bool line = source.once(2);
        const std::int32_t at = source.whole(0, (line ? lineCount(list[K]) : countOf(list[K])) - 1);
        PatchList shipped = list;
        (line ? splitAtLine : splitAtSection)(shipped, static_cast<std::int32_t>(K), at);
        ASSERT_EQ(shipped, reference::splitList(list, K, static_cast<std::size_t>(at), line)) << "round " << round;
    }
}

TEST(SurfaceKernelsAgainstThePlainForm, InterpolateGivesTheSamePatch) {
    Source source(20);
    std::array<int, 4> met{};
    for (int round = 0; round < rounds; ++round) {
        const Patch patch = randomPatch(source, source.whole(3, 7), source.whole(1, 7), round % 2 == 0);
        const std::int32_t N = source.whole(0, countOf(patch) - 1);
        const auto n = static_cast<std::size_t>(N);
        const double k = source.once(5) ? 0 : source.real(-1, 1);
        Patch shipped = patch;
        ASSERT_EQ(interpolateSection(shipped, N, k), Interpolation::Done);
        Patch plain = patch;
        plain[n] = reference::interpolated(patch, n, k);
        ASSERT_TRUE(sameBits(shipped, plain)) << "round " << round;

        zVec<double> target = patch[n][static_cast<std::size_t>(source.whole(0, lineCount(patch) - 1))];
        if (!source.once(6)) {
            target = target + zVec<double>(source.real(-1, 1), source.real(-1, 1), source.real(-1, 1));
        }
        int outcome = 0;
        plain = patch;
        plain[n] = reference::interpolatedTo(patch, n, target, outcome);
        shipped = patch;
        const Interpolation expected[] = {Interpolation::Done, Interpolation::TooFar, Interpolation::DoubleLine,
                                          Interpolation::NotMoved};
        ASSERT_EQ(interpolateToPoint(shipped, N, target), expected[outcome]) << "round " << round;
        ASSERT_TRUE(sameBits(shipped, plain)) << "round " << round;
        ++met[static_cast<std::size_t>(outcome)];
    }
    for (const int times : met) {
        EXPECT_GT(times, 0);
    }
}

TEST(SurfaceKernelsAgainstThePlainForm, CorrectLineGivesTheSamePatch) {
    Source source(17);
    for (int round = 0; round < rounds; ++round) {
        const Patch patch = randomPatch(source, source.whole(2, 8), source.whole(2, 8), false);
        const std::int32_t points = lineCount(patch);
        const std::int32_t line = source.whole(1, points - 1);
        const std::int32_t point = source.whole(0, line - 1);
        const LineBend bend{point, line, source.whole(1, 9), source.whole(1, 9), source.real(0.1, 3)};
        const auto plain = [&bend](const Patch& p) {
            return reference::bentFromFirst(p, static_cast<std::size_t>(bend.point),
                                            static_cast<std::size_t>(bend.line), bend.before, bend.after, bend.power);
        };
        Patch first = patch;
        ASSERT_TRUE(correctLine(first, 0, bend));
        ASSERT_TRUE(sameBits(first, plain(patch))) << "first, round " << round;
        Patch last = patch;
        ASSERT_TRUE(correctLine(last, countOf(patch) - 1, bend));
        ASSERT_TRUE(sameBits(last, reversedSections(plain(reversedSections(patch))))) << "last, round " << round;
        if (patch.size() < 3) {
            continue;
        }
        const std::int32_t s = source.whole(1, countOf(patch) - 2);
        Patch inner = patch;
        ASSERT_TRUE(correctLine(inner, s, bend));
        Patch expected = reversedSections(plain(reversedSections(Patch(patch.begin(), patch.begin() + s + 1))));
        const Patch behind = plain(Patch(patch.begin() + s, patch.end()));
        expected.insert(expected.end(), behind.begin() + 1, behind.end());
        ASSERT_TRUE(sameBits(inner, expected)) << "inner, round " << round;
    }
}

TEST(SurfaceKernelsAgainstThePlainForm, CorrectLineWithThePointBehindTheLineIsTheMirrorImage) {
    Source source(18);
    for (int round = 0; round < 300; ++round) {
        const Patch patch = randomPatch(source, source.whole(2, 6), source.whole(3, 8), false);
        const std::int32_t points = lineCount(patch);
        const std::int32_t point = source.whole(1, points - 1);
        const std::int32_t line = source.whole(0, point - 1);
        const std::int32_t s = source.whole(0, countOf(patch) - 1);
        Patch shipped = patch;
        ASSERT_TRUE(correctLine(shipped, s, {point, line, 4, 6, 0.65}));
        Patch mirrored = patch;
        reverseLines(mirrored);
        ASSERT_TRUE(correctLine(mirrored, s, {points - 1 - point, points - 1 - line, 6, 4, 0.65}));
        reverseLines(mirrored);
        ASSERT_TRUE(sameBits(shipped, mirrored)) << "round " << round;
    }
}

} // namespace velmora::test
