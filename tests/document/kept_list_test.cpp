#include "KeptList.h"

#include <cmath>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "state_fixture.h"

namespace velmora::test {

namespace {

using Earlier = std::vector<const KeptPatches*>;

PatchList threePatches() {
    return {flatPatch(2, 3, 0.0), flatPatch(2, 3, 1.0), flatPatch(2, 3, 2.0)};
}

KeptPatches kept(const PatchList& list, const Earlier& earlier = {}) {
    KeptPatches patches;
    patches.keep(list, earlier);
    return patches;
}

/// The patches of `later` that are those of `earlier` themselves, by the place that they have there; -1 for the others.
std::vector<int> sharedPlaces(const KeptPatches& later, const KeptPatches& earlier) {
    std::vector<int> places(later.size(), -1);
    for (std::size_t k = 0; k < later.size(); ++k) {
        for (std::size_t i = 0; i < earlier.size(); ++i) {
            if (&later[k] == &earlier[i]) {
                places[k] = static_cast<int>(i);
            }
        }
    }
    return places;
}

using Places = std::vector<int>;

std::unique_ptr<zBlock_fe> zoneAt(double x) {
    auto zone = std::make_unique<zBlock_fe>(1, 0, 0);
    for (const char* const name : {"x", "y", "z"}) {
        zone->addVariable(name)->data[0] = x;
    }
    return zone;
}

} // namespace

TEST(KeptList, HoldsACopyOfItsOwn) {
    PatchList model = threePatches();
    const KeptPatches before = kept(model);
    model[1][0][0].x = 99;
    EXPECT_EQ(before.copy(), threePatches());
}

TEST(KeptList, SharesAllPatchesButTheOneThatChanged) {
    PatchList model = threePatches();
    const KeptPatches before = kept(model);
    model[1][1][2].z += 1e-15;
    const KeptPatches after = kept(model, {&before});
    EXPECT_EQ(sharedPlaces(after, before), (Places{0, -1, 2}));
    EXPECT_EQ(after.copy(), model);
    EXPECT_EQ(before.copy(), threePatches());
}

TEST(KeptList, SharesTheOnesBehindAPatchThatCameInOrWentOut) {
    PatchList model = threePatches();
    const KeptPatches before = kept(model);
    model.insert(model.begin() + 1, flatPatch(4, 4, 9.0));
    const KeptPatches more = kept(model, {&before});
    EXPECT_EQ(sharedPlaces(more, before), (Places{0, -1, 1, 2}));
    model.erase(model.begin());
    EXPECT_EQ(sharedPlaces(kept(model, {&more}), more), (Places{1, 2, 3}));
}

TEST(KeptList, LooksAtEachListBefore) {
    PatchList model = threePatches();
    const KeptPatches first = kept(model);
    model[0][0][0].x = 5;
    const KeptPatches second = kept(model, {&first});
    model[0] = threePatches()[0];
    const KeptPatches third = kept(model, {&second, &first});
    EXPECT_EQ(sharedPlaces(third, first), (Places{0, 1, 2}));
}

TEST(KeptList, TellsTheTwoZerosApartAndWhatIsNoNumberNotFromItself) {
    PatchList model = threePatches();
    model[0][0][0].x = 0.0;
    model[1][0][0].x = std::numeric_limits<double>::quiet_NaN();
    const KeptPatches before = kept(model);
    model[0][0][0].x = -0.0;
    const KeptPatches after = kept(model, {&before});
    EXPECT_EQ(sharedPlaces(after, before), (Places{-1, 1, 2}));
    KeptPatches back = kept(model, {&after});
    model[0][0][0].x = 0.0;
    back.giveBack(model);
    EXPECT_TRUE(std::signbit(model[0][0][0].x));
}

TEST(KeptList, HoldsNoPatchTwice) {
    const KeptPatches one = kept({flatPatch(2, 2)});
    const KeptPatches two = kept({flatPatch(2, 2), flatPatch(2, 2)}, {&one});
    EXPECT_NE(&two[0], &two[1]);
    EXPECT_EQ(&two[0], &one[0]);
}

TEST(KeptList, MayShareWithItself) {
    PatchList model = threePatches();
    KeptPatches patches = kept(model);
    const Patch* const last = &patches[2];
    model[0][0][0].x = 7;
    patches.keep(model, Earlier{&patches});
    EXPECT_EQ(&patches[2], last);
    EXPECT_EQ(patches.copy(), model);
}

// ---- Giving back ----------------------------------------------------------------------------------------------------

TEST(KeptList, GivesBackWhatDiffersAndLeavesTheOthersInPlace) {
    PatchList model = threePatches();
    KeptPatches before = kept(model);
    const KeptPatches other = kept(model, {&before});
    const zVec<double>* const last = model[2][0].data();
    model[1].clear();
    EXPECT_FALSE(before.giveBack(model));
    EXPECT_EQ(model, threePatches());
    EXPECT_EQ(model[2][0].data(), last);
    EXPECT_TRUE(before.empty());
    EXPECT_EQ(other.copy(), threePatches());
}

TEST(KeptList, GivesBackAListOfAnotherLength) {
    for (const int places : {0, 1, 2, 4, 6}) {
        PatchList model = threePatches();
        KeptPatches before = kept(model);
        model.resize(static_cast<std::size_t>(places), flatPatch(3, 3, 8.0));
        before.giveBack(model);
        EXPECT_EQ(model, threePatches()) << places;
    }
    PatchList model = threePatches();
    KeptPatches before = kept(model);
    model.erase(model.begin());
    const zVec<double>* const last = model[1][0].data();
    before.giveBack(model);
    EXPECT_EQ(model, threePatches());
    EXPECT_EQ(model[2][0].data(), last);
}

TEST(KeptList, GivesBackPatchesWithoutSections) {
    const PatchList wanted = {Patch(), flatPatch(2, 2), Patch()};
    PatchList model = wanted;
    KeptPatches before = kept(model);
    model = {flatPatch(3, 3), Patch(), Patch(), flatPatch(2, 2)};
    before.giveBack(model);
    EXPECT_EQ(model, wanted);
}

TEST(KeptList, GivesBackEqualPatchesEachForItself) {
    const PatchList wanted = {flatPatch(2, 2), flatPatch(2, 2)};
    PatchList model = wanted;
    KeptPatches before = kept(model);
    model.pop_back();
    before.giveBack(model);
    EXPECT_EQ(model, wanted);
}

TEST(KeptList, GivesZonesBack) {
    std::vector<std::unique_ptr<zBlock_fe>> zones;
    zones.push_back(zoneAt(1));
    zones.push_back(zoneAt(2));
    const zBlock_fe* const first = zones[0].get();
    KeptZones before;
    before.keep(zones, {});
    zones[1]->variables[0]->data[0] = 5;
    before.giveBack(zones);
    ASSERT_EQ(zones.size(), 2U);
    EXPECT_EQ(zones[0].get(), first);
    EXPECT_EQ(zones[1]->variables[0]->data[0], 2.0);
}

// ---- Taking each other's places -------------------------------------------------------------------------------------

TEST(KeptList, AndTheModelTakeEachOthersPlaces) {
    PatchList model = threePatches();
    KeptPatches before = kept(model);
    const KeptPatches other = kept(model, {&before});
    const zVec<double>* const last = model[2][0].data();
    model[0][0][0].x = 4;
    model.insert(model.begin() + 1, flatPatch(5, 5, 5.0));
    const PatchList changed = model;
    KeptPatches going = before.prepareExchange(model);
    EXPECT_EQ(model, changed);
    before.exchange(model, std::move(going));
    EXPECT_EQ(model, threePatches());
    EXPECT_EQ(model[2][0].data(), last);
    EXPECT_EQ(before.copy(), changed);
    EXPECT_EQ(other.copy(), threePatches());
    before.giveBack(model);
    EXPECT_EQ(model, changed);
    EXPECT_EQ(other.copy(), threePatches());
}

TEST(KeptList, WithoutAnythingTakesTheModelsPlace) {
    PatchList model = threePatches();
    KeptPatches nothing;
    KeptPatches going = nothing.prepareExchange(model);
    nothing.exchange(model, std::move(going));
    EXPECT_TRUE(model.empty());
    EXPECT_EQ(nothing.copy(), threePatches());
}

} // namespace velmora::test
