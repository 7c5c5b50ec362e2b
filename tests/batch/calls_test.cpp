#include <stdexcept>

#include "DocumentState.h"
#include "SessionFixture.h"
#include "given_model.h"

namespace velmora::test {
namespace {

/// A session that a program drives by calls, without lines.
class Calls : public SessionFixture {
protected:
    using Words = std::vector<std::string>;

    Next call(const Words& words) {
        recorder.events.clear();
        const Next next = session.run(++number, words);
        events = recorder.events;
        return next;
    }

    /// Gives the session a model, as a program does.
    void give(PatchList patches, zRegion_fe region = {}) {
        recorder.events.clear();
        ASSERT_EQ(session.run(++number,
                              [&](Session& work) -> MaybeFailure {
                                  takeGivenModel(work.document(), std::move(patches), std::move(region));
                                  return std::nullopt;
                              }),
                  Next::GoOn);
        events = recorder.events;
    }

    /// Two zones are not needed: one triangle with corners at whole coordinates.
    static zRegion_fe triangle() {
        zRegion_fe region;
        auto zone = std::make_unique<zBlock_fe>(3, 4, 1);
        zone->connectivity = {0, 1, 2, -1};
        zone->addVariable("x")->data = {0.0, 1.0, 0.0};
        zone->addVariable("y")->data = {0.0, 0.0, 1.0};
        zone->addVariable("z")->data = {0.0, 0.0, 0.0};
        region.blocks.push_back(std::move(zone));
        return region;
    }

    const DocumentState& document() const { return session.session().state(); }
};

TEST_F(Calls, WordsNeedNoQuotes) {
    const std::string name = (folder / "my \"plate\".apt").string();
    writeFileText(name, aptText({flatPatch(2, 3)}));
    ASSERT_EQ(call({"open", name}), Next::GoOn);
    EXPECT_EQ(document().patches.at(0).at(0).size(), 3U);
    EXPECT_EQ(events.back().at("outcome"), "ok");
}

TEST_F(Calls, WordsThatAreNoLineFailAsInAScript) {
    EXPECT_EQ(call({"unknown"}), Next::Fail);
    EXPECT_EQ(events.back().at("event"), "error");
}

TEST_F(Calls, WorkMayEndInAFailure) {
    EXPECT_EQ(session.run(++number,
                          [](Session&) -> MaybeFailure {
                              return ScriptFailure{"cause", "remedy"};
                          }),
              Next::Fail);
    EXPECT_EQ(recorder.events.back().at("text"), "cause; remedy");
}

// ---- Who listens ----------------------------------------------------------------------------------------------------

TEST_F(Calls, AListenerAnswersWhatTheLineDoesNot) {
    std::vector<std::string> asked;
    session.listenTo({[&asked](const std::string& text) {
                          asked.push_back(text);
                          return true;
                      },
                      {}});
    must("open " + file("plate.apt"));
    ASSERT_EQ(call({"run", "file.open", "file=" + (folder / "plate.apt").string()}), Next::GoOn);
    EXPECT_EQ(asked, Words{"Current geometry will be removed. Are you sure"});
    EXPECT_EQ(event("question").at("answer"), "yes");

    asked.clear();
    must("run file.open answer=no");
    EXPECT_TRUE(asked.empty());
    EXPECT_EQ(event("question").at("answer"), "no");
}

TEST_F(Calls, AnExceptionOfAListenerPassesAndTheModelStays) {
    must("open " + file("plate.apt"));
    const PatchList before = document().patches;
    session.listenTo({[](const std::string&) -> bool { throw std::runtime_error("no answer"); }, {}});
    EXPECT_THROW(call({"run", "file.open", "file=" + (folder / "plate.apt").string()}), std::runtime_error);
    EXPECT_EQ(document().patches, before);
    session.listenTo({});
    EXPECT_EQ(errorOf("run file.open file=x.apt"),
              "the question \"Current geometry will be removed. Are you sure\" has no answer; give answer=yes or "
              "answer=no");
}

// ---- A model that a program gives -----------------------------------------------------------------------------------

TEST_F(Calls, AGivenModelIsUntitledWhereThereWasNone) {
    give({flatPatch(2, 3)});
    EXPECT_EQ(event("title").at("text"), "Untitled.apt");
    EXPECT_TRUE(document().documentModified);
    EXPECT_TRUE(document().surfaceMode);
    EXPECT_FALSE(document().patchUndoReady);
    EXPECT_EQ(document().boxMax, zVec<double>(2.0, 1.0, 0.0));
}

TEST_F(Calls, AGivenModelIsAnEditThatUndoTakesBack) {
    must("open " + file("plate.apt"));
    must("run patch.inputAndAdd number=1");
    must("run line.inputSection patch=1 section=4");
    give({flatPatch(2, 3), flatPatch(2, 2)});
    EXPECT_EQ(document().patches.size(), 2U);
    EXPECT_EQ(document().modelFile.documentTitle, "plate.apt");
    EXPECT_EQ(document().blockCount, 0);
    EXPECT_FALSE(document().capture->sectionCaptured);
    must("run patch.undo");
    EXPECT_EQ(document().patches, PatchList{flatPatch(4, 5)});
    EXPECT_EQ(document().modelFile.documentTitle, "plate.apt");
}

TEST_F(Calls, TheNameFollowsTheKind) {
    must("open " + file("plate.apt"));
    Patch lines = flatPatch(2, 3);
    lines.back().pop_back();
    give({lines});
    EXPECT_EQ(document().modelFile.documentTitle, "plate.skl");
    EXPECT_EQ(document().fileKind, FileKind::Skl);
    give({}, triangle());
    EXPECT_EQ(document().modelFile.documentTitle, "plate.dat");
    EXPECT_EQ(document().structureKind, StructureKind::Unstructured);
    EXPECT_TRUE(document().patches.empty());
    must("run patch.undo");
    EXPECT_EQ(document().patches, PatchList{lines});
    EXPECT_TRUE(document().feRegion.blocks.empty());
}

} // namespace
} // namespace velmora::test
