#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>

#include <sys/wait.h>
#include <unistd.h>

#include "FrameRig.h"
#include "LeaveDesk.h"
#include "RescueCopy.h"
#include "RescueFolder.h"
#include "VelmoraDoc.h"
#include "messages.h"
#include "rescue_format.h"

namespace velmora::test {
namespace {

using testing::IsEmpty;

namespace fs = std::filesystem;

std::vector<fs::path> copiesIn(const fs::path& root) {
    std::vector<fs::path> copies;
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(root, error)) {
        if (entry.path().filename() == "model") {
            copies.push_back(entry.path());
        }
    }
    return copies;
}

// ---- The folder -----------------------------------------------------------------------------------------------------

TEST(RescueRoot, IsInTheFolderOfTheUsersState) {
    const QByteArray before = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", "/state");
    EXPECT_EQ(rescueRoot(), "/state/velmora/rescue");
    qputenv("XDG_STATE_HOME", "relative");
    EXPECT_EQ(rescueRoot(), fs::path(qgetenv("HOME").toStdString()) / ".local/state/velmora/rescue");
    qunsetenv("XDG_STATE_HOME");
    EXPECT_EQ(rescueRoot(), fs::path(qgetenv("HOME").toStdString()) / ".local/state/velmora/rescue");
    qputenv("XDG_STATE_HOME", before);
}

TEST(RescueFolder, KeepsItsCopyForTheOwnerAlone) {
    const TemporaryFolder place;
    const fs::path root = place / "a" / "rescue";
    auto folder = RescueFolder::make(root);
    ASSERT_TRUE(folder);
    EXPECT_TRUE(folder->write("first"));
    EXPECT_TRUE(folder->write("second"));
    EXPECT_EQ(folder->read(), "second");
    EXPECT_EQ(fs::status(folder->copy().parent_path()).permissions(), fs::perms::owner_all);
    EXPECT_EQ(copiesIn(root).size(), 1U);
    folder->remove();
    EXPECT_TRUE(fs::is_empty(root));
}

TEST(RescueFolder, CannotBeMadeWhereNoFolderCan) {
    const TemporaryFolder place;
    writeFileText(place / "file", "");
    EXPECT_FALSE(RescueFolder::make(place / "file" / "rescue"));
    EXPECT_FALSE(RescueFolder::make({}));
    EXPECT_THAT(RescueFolder::left(place / "none"), IsEmpty());
}

/// Another program that writes a copy, tells so and waits to be killed.
pid_t startOther(const fs::path& root, const char* bytes) {
    int ready[2];
    if (::pipe(ready) != 0) {
        return -1;
    }
    const pid_t other = ::fork();
    if (other == 0) {
        const auto folder = RescueFolder::make(root);
        const bool written = folder && folder->write(bytes);
        [[maybe_unused]] const auto told = ::write(ready[1], written ? "1" : "0", 1);
        for (;;) {
            ::pause();
        }
    }
    char mark = '0';
    EXPECT_EQ(::read(ready[0], &mark, 1), 1);
    EXPECT_EQ(mark, '1');
    ::close(ready[0]);
    ::close(ready[1]);
    return other;
}

void killAndWait(pid_t other) {
    ::kill(other, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(other, &status, 0), other);
}

TEST(RescueFolder, IsLeftOnceItsProcessWasKilledAndNotBefore) {
    const TemporaryFolder place;
    const fs::path root = place / "rescue";
    const pid_t other = startOther(root, "work");
    EXPECT_THAT(RescueFolder::left(root), IsEmpty()) << "it runs";
    killAndWait(other);
    auto left = RescueFolder::left(root);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].read(), "work");
    EXPECT_THAT(RescueFolder::left(root), IsEmpty()) << "it belongs to this process now";
    left.clear();
    EXPECT_EQ(RescueFolder::left(root).size(), 1U) << "it was let go, not removed";
}

TEST(RescueFolder, WithoutACopyIsClearedAway) {
    const TemporaryFolder place;
    { ASSERT_TRUE(RescueFolder::make(place.path())); }
    ASSERT_FALSE(fs::is_empty(place.path()));
    EXPECT_THAT(RescueFolder::left(place.path()), IsEmpty());
    EXPECT_TRUE(fs::is_empty(place.path()));
}

// ---- The copy of a model --------------------------------------------------------------------------------------------

struct RescueRig : FrameRig {
    TemporaryFolder place;
    fs::path root = place / "rescue";
    FlatDesk desk;

    RescueRig() { frame.openFile(qtPath(desk.model)); }
    ~RescueRig() { doc().documentModified = false; }

    void move() {
        person.atDialog("CBlockMove", {{"deltaX", "0.1"}});
        run("model.move");
    }
    std::optional<RescuedModel> copied() {
        const auto copies = copiesIn(root);
        return copies.size() == 1 ? decodeRescue(fileText(copies[0])) : std::nullopt;
    }
    /// Looks until the copy holds the model.
    bool settles(RescueCopy& copy) {
        return waitUntil([&] {
            copy.look();
            const auto model = copied();
            return model && model->patches == doc().patches;
        });
    }
};

TEST(RescueCopy, HoldsTheChangedModelAndGoesWhenItIsSaved) {
    RescueRig rig;
    RescueCopy copy(rig.document(), rig.root);
    copy.look();
    copy.look();
    EXPECT_THAT(copiesIn(rig.root), IsEmpty()) << "nothing has changed";
    rig.move();
    ASSERT_TRUE(rig.settles(copy));
    EXPECT_EQ(rig.copied()->path, rig.desk.model.string());
    EXPECT_EQ(rig.copied()->title, "flat.apt");
    rig.move();
    ASSERT_TRUE(rig.settles(copy)) << "the next change comes along";
    rig.run("file.save");
    copy.look();
    EXPECT_THAT(copiesIn(rig.root), IsEmpty());
}

TEST(RescueCopy, IsWrittenWithinSecondsWithoutAnybodyAsking) {
    RescueRig rig;
    const RescueCopy copy(rig.document(), rig.root);
    rig.move();
    QElapsedTimer waited;
    waited.start();
    while (copiesIn(rig.root).empty() && waited.elapsed() < 8000) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    EXPECT_LT(waited.elapsed(), 5000);
    EXPECT_FALSE(copiesIn(rig.root).empty());
}

TEST(RescueCopy, WaitsForACommandThatWaitsForAnAnswer) {
    RescueRig rig;
    RescueCopy copy(rig.document(), rig.root);
    rig.doc().documentModified = true;
    rig.person.at("CBlockMove", [&](QWidget& dialog) {
        for (int look = 0; look < 6; ++look) {
            copy.look();
        }
        EXPECT_THAT(copiesIn(rig.root), IsEmpty());
        dynamic_cast<QDialog&>(dialog).reject();
    });
    rig.run("model.move");
    EXPECT_TRUE(rig.settles(copy));
}

TEST(RescueCopy, GoesAtACleanEndAndStaysWhenItIsToBeKept) {
    for (const bool kept : {false, true}) {
        RescueRig rig;
        {
            RescueCopy copy(rig.document(), rig.root);
            rig.move();
            EXPECT_TRUE(copy.writeNow());
            EXPECT_EQ(copiesIn(rig.root).size(), 1U);
            if (kept) {
                copy.keep();
            }
        }
        EXPECT_EQ(copiesIn(rig.root).size(), kept ? 1U : 0U);
    }
}

TEST(RescueCopy, TellsOnceWhereNoneCanBeKept) {
    RescueRig rig;
    writeFileText(rig.root, "a file in the way");
    RescueCopy copy(rig.document(), rig.root);
    rig.move();
    for (int look = 0; look < 5; ++look) {
        copy.look();
    }
    EXPECT_EQ(rig.message(), QStringLiteral("No rescue copy can be kept in ") + qtPath(rig.root));
    EXPECT_FALSE(copy.writeNow());
    EXPECT_THAT(copiesIn(rig.root), IsEmpty());
}

TEST(RescueCopy, OfTwoMillionPointsHoldsUpTheWindowForLessThanTheEyeNotices) {
    RescueRig rig;
    PatchList large(4, Patch(500, PointList(1000)));
    for (Patch& patch : large) {
        for (PointList& section : patch) {
            for (std::size_t m = 0; m < section.size(); ++m) {
                section[m] = {0.1 * static_cast<double>(m), 1, 2};
            }
        }
    }
    rig.doc().patches = std::move(large);
    const auto begin = std::chrono::steady_clock::now();
    const std::string bytes = rig.document().rescueBytes();
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
    EXPECT_GT(bytes.size(), 48'000'000U);
    // Twenty to sixty milliseconds where the machine is free: the limit leaves room for a busy one and for sanitizers.
    EXPECT_LT(took.count(), 3000);
    std::printf("2,000,000 points: %lld ms between two events\n", static_cast<long long>(took.count()));
    RecordProperty("milliseconds", static_cast<int>(took.count()));
}

// ---- At the next start ----------------------------------------------------------------------------------------------

/// What a run that was killed left behind: the flat model, moved.
PatchList leaveCopy(const fs::path& root, const fs::path& model) {
    PatchList moved = {flatPatch(3, 4), flatPatch(2, 2)};
    moved[0][0][0] = {9, 9, 1.0 / 3.0};
    const auto folder = RescueFolder::make(root);
    EXPECT_TRUE(folder && folder->write(encodeRescue(model.string(), "flat.apt", false, moved, {}, {}, {})));
    return moved;
}

QString question(const fs::path& model) {
    return qtText(message::bringBack(model.string()));
}

TEST(LeaveDesk, YesBringsTheModelBackAsAChangedOneUnderItsOwnName) {
    RescueRig rig;
    const PatchList moved = leaveCopy(rig.root, rig.desk.model);
    LeaveDesk desk(rig.frame, rig.root);
    rig.person.atQuestion(question(rig.desk.model), true);
    EXPECT_TRUE(desk.offerLeft());
    EXPECT_EQ(rig.doc().patches, moved);
    EXPECT_TRUE(rig.doc().documentModified);
    EXPECT_EQ(rig.doc().modelFile.chosenPath, rig.desk.model);
    EXPECT_EQ(rig.frame.windowTitle(), QStringLiteral("flat.apt[*] - Velmora"));
    EXPECT_EQ(copiesIn(rig.root).size(), 1U) << "it is in no file yet";
}

TEST(LeaveDesk, NoRemovesTheCopy) {
    RescueRig rig;
    leaveCopy(rig.root, rig.desk.model);
    LeaveDesk desk(rig.frame, rig.root);
    rig.person.atQuestion(question(rig.desk.model), false);
    EXPECT_FALSE(desk.offerLeft());
    EXPECT_THAT(copiesIn(rig.root), IsEmpty());
}

TEST(LeaveDesk, AQuestionWithoutAnAnswerKeepsItForTheNextStart) {
    RescueRig rig;
    leaveCopy(rig.root, rig.desk.model);
    LeaveDesk desk(rig.frame, rig.root);
    rig.person.at("questionBox", [](QWidget& box) { box.close(); });
    EXPECT_FALSE(desk.offerLeft());
    EXPECT_EQ(RescueFolder::left(rig.root).size(), 1U);
}

TEST(LeaveDesk, OffersNothingOfAProgramThatRunsAndNothingWithoutRescue) {
    RescueRig rig;
    const pid_t other = startOther(rig.root, "its own");
    EXPECT_FALSE(LeaveDesk(rig.frame, rig.root).offerLeft());
    killAndWait(other);
    EXPECT_FALSE(LeaveDesk(rig.frame, {}).offerLeft());
    EXPECT_EQ(copiesIn(rig.root).size(), 1U);
}

TEST(LeaveDesk, ACopyThatCannotBeReadIsToldAndStays) {
    RescueRig rig;
    {
        const auto folder = RescueFolder::make(rig.root);
        ASSERT_TRUE(folder && folder->write("no model"));
    }
    LeaveDesk desk(rig.frame, rig.root);
    rig.person.atMessage(qtText(message::rescueUnreadable(copiesIn(rig.root).at(0).string()).text));
    EXPECT_FALSE(desk.offerLeft());
    EXPECT_EQ(copiesIn(rig.root).size(), 1U);
}

// ---- Other ways of leaving ------------------------------------------------------------------------------------------

TEST(LeaveDesk, ASignalLeavesACopyAndEndsWithoutAQuestion) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        RescueRig rig;
        rig.move();
        {
            LeaveDesk desk(rig.frame, rig.root);
            bool left = false;
            QObject::connect(&desk, &LeaveDesk::left, &desk, [&left] { left = true; });
            ::raise(signal);
            EXPECT_TRUE(waitUntil([&left] { return left; }));
        }
        ASSERT_TRUE(rig.copied()) << "it outlives the program";
        EXPECT_EQ(rig.copied()->patches, rig.doc().patches);
    }
}

TEST(LeaveDesk, ASignalEndsAnUnchangedModelAtOnce) {
    RescueRig rig;
    LeaveDesk desk(rig.frame, rig.root);
    bool left = false;
    QObject::connect(&desk, &LeaveDesk::left, &desk, [&left] { left = true; });
    ::raise(SIGTERM);
    EXPECT_TRUE(waitUntil([&left] { return left; }));
    EXPECT_THAT(copiesIn(rig.root), IsEmpty());
}

TEST(LeaveDesk, WithoutRescueASignalAsks) {
    RescueRig rig;
    rig.move();
    LeaveDesk desk(rig.frame, {});
    bool left = false;
    QObject::connect(&desk, &LeaveDesk::left, &desk, [&left] { left = true; });
    rig.person.at("questionBox", [](QWidget& box) { box.close(); });
    ::raise(SIGTERM);
    EXPECT_TRUE(waitUntil([&rig] { return rig.person.isDone(); }));
    EXPECT_TRUE(rig.frame.isVisible());
    EXPECT_FALSE(left);
}

TEST(LeaveDesk, TheEndOfTheSessionIsAnsweredByACopyElseByTheQuestion) {
    RescueRig rig;
    rig.move();
    {
        LeaveDesk desk(rig.frame, rig.root);
        EXPECT_TRUE(desk.sessionMayEnd(false));
        EXPECT_TRUE(rig.copied());
    }
    EXPECT_THAT(copiesIn(rig.root), IsEmpty()) << "the program ended by itself after all";
    LeaveDesk without(rig.frame, {});
    EXPECT_FALSE(without.sessionMayEnd(false));
    rig.person.at("questionBox", [](QWidget& box) { box.close(); });
    EXPECT_FALSE(without.sessionMayEnd(true));
    rig.person.atQuestion(QString::fromLatin1(message::saveBeforeExit), false);
    EXPECT_TRUE(without.sessionMayEnd(true));
}

} // namespace
} // namespace velmora::test
