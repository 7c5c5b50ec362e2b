#include "Capture.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "arranged_capture.h"

namespace velmora {

namespace {

// A state is written as the letters of its flags, a colon, and the letters of the numbers that are there:
// p, P point armed and captured; f, F free point; a, A patch; s, S section; l, L line; d dragging, r removing,
// c correcting, k something picked. K patch, N section and M index of the point, n section, m line, R patch to remove.

struct Flag {
    char letter;
    bool CaptureState::*field;
};
constexpr Flag flags[] = {{'p', &CaptureState::pointCaptureArmed},   {'P', &CaptureState::pointCaptured},
                          {'f', &CaptureState::freePointArmed},      {'F', &CaptureState::freePointHeld},
                          {'a', &CaptureState::patchCaptureArmed},   {'A', &CaptureState::patchCaptured},
                          {'s', &CaptureState::sectionCaptureArmed}, {'S', &CaptureState::sectionCaptured},
                          {'l', &CaptureState::lineCaptureArmed},    {'L', &CaptureState::lineCaptured},
                          {'d', &CaptureState::pointDragging},       {'r', &CaptureState::patchRemoving},
                          {'c', &CaptureState::dragCorrectsLine},    {'k', &CaptureState::pointPicked}};

struct Number {
    char letter;
    std::int32_t CaptureState::*field;
};
constexpr Number numbers[] = {{'K', &CaptureState::capturedPatch}, {'N', &CaptureState::capturedPointSection},
                              {'M', &CaptureState::capturedPoint}, {'n', &CaptureState::capturedSection},
                              {'m', &CaptureState::capturedLine},  {'R', &CaptureState::patchToRemove}};

Capture captureIn(const std::string& written) {
    Capture capture;
    const std::size_t colon = written.find(':');
    for (const Flag& flag : flags) {
        test::arranged(capture).*flag.field = written.substr(0, colon).find(flag.letter) != std::string::npos;
    }
    for (const Number& number : numbers) {
        const bool there = colon != std::string::npos && written.find(number.letter, colon) != std::string::npos;
        test::arranged(capture).*number.field = there ? 7 : -1;
    }
    return capture;
}

std::string written(const CaptureState& state) {
    std::string on;
    std::string there;
    for (const Flag& flag : flags) {
        on += state.*flag.field ? std::string(1, flag.letter) : "";
    }
    for (const Number& number : numbers) {
        there += state.*number.field >= 0 ? std::string(1, number.letter) : "";
    }
    const std::string all = there.empty() ? on : on + ":" + there;
    return all.empty() ? "-" : all;
}

const std::map<std::string, void (*)(Capture&)> acts = {
    {"armPoint", [](Capture& c) { c.armPoint(); }},
    {"armFreePoint", [](Capture& c) { c.armFreePoint(); }},
    {"armSection", [](Capture& c) { c.armSection(); }},
    {"armLine", [](Capture& c) { c.armLine(); }},
    {"armPatch", [](Capture& c) { c.armPatch(); }},
    {"armRemoval", [](Capture& c) { c.armRemoval(); }},
    {"armDrag", [](Capture& c) { c.armDrag(); }},
    {"armCorrection", [](Capture& c) { c.armCorrection(); }},
    {"disarmForPatch", [](Capture& c) { c.disarmForPatch(); }},
    {"disarmForNumber", [](Capture& c) { c.disarmForPatchNumber(); }},
    {"disarmForRemoval", [](Capture& c) { c.disarmForRemoval(); }},
    {"keepPoint", [](Capture& c) { c.keepPoint(); }},
    {"holdPoint", [](Capture& c) { c.holdPoint(1, 2, 3, {}); }},
    {"holdSection", [](Capture& c) { c.holdSection(1, 2, 3); }},
    {"holdLine", [](Capture& c) { c.holdLine(1, 2); }},
    {"holdPatch", [](Capture& c) { c.holdPatch(1, true); }},
    {"holdBlock", [](Capture& c) { c.holdBlock(); }},
    {"releasePoint", [](Capture& c) { c.releasePoint(); }},
    {"releaseFreePoint", [](Capture& c) { c.releaseFreePoint(); }},
    {"releaseDrag", [](Capture& c) { c.releaseDrag(); }},
    {"releasePatch", [](Capture& c) { c.releasePatch(); }},
    {"releaseRemoval", [](Capture& c) { c.releaseRemoval(); }},
    {"releaseSection", [](Capture& c) { c.releaseSection(); }},
    {"releaseLine", [](Capture& c) { c.releaseLine(); }},
    {"releaseCorrection", [](Capture& c) { c.releaseCorrection(); }},
    {"leavePoint", [](Capture& c) { c.leavePoint(); }},
    {"leaveCurve", [](Capture& c) { c.leaveCurve(); }},
    {"leavePatch", [](Capture& c) { c.leavePatch(false); }},
    {"showPoint", [](Capture& c) { c.showPoint(); }},
    {"dropPoint", [](Capture& c) { c.dropPoint(); }},
    {"losePoint", [](Capture& c) { c.losePoint(); }},
    {"dropPatches", [](Capture& c) { c.dropPatches(); }},
    {"forgetPatch", [](Capture& c) { c.forgetPatch(); }},
    {"forgetNumbers", [](Capture& c) { c.forgetNumbers(); }},
    {"forgetAll", [](Capture& c) { c.forgetAll(); }},
};

// The first row names the states before, each further row an act and what it makes of each of them.

constexpr const char* fromPointRegimes = R"(
-                 -         p         pk:KNM    Pk:KNM    f         fk:KNM    Fk:KNM    Pdk:KNM   PSck:KNMn PSk:KNMn
armPoint          p         p         p:N       p:N       p         p:N       p:N       pd:N      pSc:KNn   pS:KNn
armFreePoint      f         pf        pfk:N     Pfk:N     f         fk:N      fk:N      Pfdk:N    PfSck:KNn PfSk:KNn
armSection        s         s         sk:NM     Psk:NM    s         sk:NM     Fsk:NM    Psdk:NM   Psck:NM   Psk:NM
armLine           l         l         lk:NM     Plk:NM    l         lk:NM     Flk:NM    Pldk:NM   Plck:NMn  Plk:NMn
armPatch          a         pa        pak:NM    Pak:NM    fa        fak:NM    Fak:NM    Padk:NM   PaSck:NMn PaSk:NMn
armRemoval        r         pr        prk:KNM   Prk:KNM   fr        frk:KNM   Frk:KNM   Pdrk:KNM  PSrck:KNMn PSrk:KNMn
armDrag           d         pd        pdk:KNM   Pdk:KNM   fd        fdk:KNM   Fdk:KNM   Pdk:KNM   PSdck:KNMn PSdk:KNMn
armCorrection     c         pc        pck:KNM   Pck:KNM   fc        fck:KNM   Fck:KNM   Pdck:KNM  PSck:KNMn PSck:KNMn
disarmForPatch    -         -         k:KNM     Pk:KNM    -         k:KNM     Fk:KNM    Pdk:KNM   PSck:KNMn PSk:KNMn
disarmForNumber   -         -         k:KNM     Pk:KNM    f         fk:KNM    Fk:KNM    Pdk:KNM   PSck:KNMn PSk:KNMn
disarmForRemoval  -         p         pk:KNM    Pk:KNM    f         fk:KNM    Fk:KNM    Pdk:KNM   PSck:KNMn PSk:KNMn
keepPoint         P         P         Pk:KNM    Pk:KNM    Pf        Pfk:KNM   PFk:KNM   Pdk:KNM   PSck:KNMn PSk:KNMn
holdPoint         Pk:KNM    Pk:KNM    Pk:KNM    Pk:KNM    Pfk:KNM   Pfk:KNM   PFk:KNM   Pdk:KNM   PSck:KNMn PSk:KNMn
holdSection       S:Kn      S:Kn      Sk:KNMn   PSk:KNMn  S:Kn      Sk:KNMn   FSk:KNMn  PSdk:KNMn PSck:KNMn PSk:KNMn
holdLine          L:Km      L:Km      Lk:KNMm   PLk:KNMm  L:Km      Lk:KNMm   FLk:KNMm  PLdk:KNMm PLck:KNMnm PLk:KNMnm
holdPatch         A:K       pA:K      pAk:KNM   PAk:KNM   fA:K      fAk:KNM   FAk:KNM   PAdk:KNM  PASck:KNMn PASk:KNMn
holdBlock         A         pA        pAk:KNM   PAk:KNM   fA        fAk:KNM   FAk:KNM   PAdk:KNM  PASck:KNMn PASk:KNMn
releasePoint      -         p         Pk:KNM    Pk:KNM    f         fk:KNM    Fk:KNM    Pdk:KNM   PSck:KNMn PSk:KNMn
releaseFreePoint  -         p         pk:KNM    Pk:KNM    f         Fk:KNM    Fk:KNM    Pdk:KNM   PSck:KNMn PSk:KNMn
releaseDrag       -         p         pk:KNM    Pk:KNM    f         fk:KNM    Fk:KNM    Pk:KNM    PSck:KNMn PSk:KNMn
releasePatch      -         p         pk:KNM    Pk:KNM    f         fk:KNM    Fk:KNM    Pdk:KNM   PSck:KNMn PSk:KNMn
releaseRemoval    -         p         pk:KNM    Pk:KNM    f         fk:KNM    Fk:KNM    Pdk:KNM   PSck:KNMn PSk:KNMn
releaseSection    -         p         pk:KNM    Pk:KNM    f         fk:KNM    Fk:KNM    Pdk:KNM   PSck:KNMn PSk:KNMn
releaseLine       -         p         pk:KNM    Pk:KNM    f         fk:KNM    Fk:KNM    Pdk:KNM   PSck:KNMn PSk:KNMn
releaseCorrection -         p         pk:KNM    Pk:KNM    f         fk:KNM    Fk:KNM    Pdk:KNM   PSk:KNMn  PSk:KNMn
leavePoint        -         -         :NM       :NM       -         :NM       :NM       :NM       S:KNMn    S:KNMn
leaveCurve        -         p         p:NM      P:NM      f         f:NM      F:NM      Pd:NM     Pc:NM     P:NM
leavePatch        -         p         p:KNM     P:KNM     f         f:KNM     F:KNM     Pd:KNM    PSc:KNMn  PS:KNMn
showPoint         k         pk        pk:KNM    Pk:KNM    fk        fk:KNM    Fk:KNM    Pdk:KNM   PSck:KNMn PSk:KNMn
dropPoint         -         p         p:KN      :KN       f         f:KN      F:KN      d:KN      Sc:KNn    S:KNn
losePoint         -         p         pk        Pk        f         fk        Fk        Pdk       PSck:Kn   PSk:Kn
dropPatches       -         p         pk:NM     Pk:NM     f         fk:NM     Fk:NM     Pdk:NM    PSck:NMn  PSk:NMn
forgetPatch       -         p         pk:NM     Pk:NM     f         fk:NM     Fk:NM     Pdk:NM    PSck:NMn  PSk:NMn
forgetNumbers     -         p         pk        Pk        f         fk        Fk        Pdk       PSck      PSk
forgetAll         -         -         -         -         -         -         -         -         -         -
)";

constexpr const char* fromPatchAndCurveRegimes = R"(
-                 a         a:K       A:K       Ar:KR     s         s:Kn      S:Kn      l         l:Km      L:Km
armPoint          p         p         pA        pA:R      p         p:Kn      pS:Kn     p         p:Km      pL:Km
armFreePoint      f         f         fA        fA:R      f         f:Kn      fS:Kn     f         f:Km      fL:Km
armSection        s         s         As        As:R      s         s         s         s         s:m       s:m
armLine           l         l         Al        Al:R      l         l:n       l:n       l         l         l
armPatch          a         a         a         a:R       as        as:n      aS:n      al        al:m      aL:m
armRemoval        ar        ar:K      Ar:K      Ar:KR     sr        sr:Kn     Sr:Kn     lr        lr:Km     Lr:Km
armDrag           ad        ad:K      Ad:K      Adr:KR    sd        sd:Kn     Sd:Kn     ld        ld:Km     Ld:Km
armCorrection     ac        ac:K      Ac:K      Arc:KR    sc        sc:Kn     Sc:Kn     lc        lc:Km     Lc:Km
disarmForPatch    a         a:K       A:K       Ar:KR     -         :Kn       S:Kn      -         :Km       L:Km
disarmForNumber   a         a:K       A:K       Ar:KR     -         :Kn       S:Kn      l         l:Km      L:Km
disarmForRemoval  A         A:K       A:K       Ar:KR     s         s:Kn      S:Kn      l         l:Km      L:Km
keepPoint         Pa        Pa:K      PA:K      PAr:KR    Ps        Ps:Kn     PS:Kn     Pl        Pl:Km     PL:Km
holdPoint         Pak:KNM   Pak:KNM   PAk:KNM   PArk:KNMR Psk:KNM   Psk:KNMn  PSk:KNMn  Plk:KNM   Plk:KNMm  PLk:KNMm
holdSection       S:Kn      S:Kn      AS:Kn     AS:KnR    S:Kn      S:Kn      S:Kn      S:Kn      S:Knm     S:Knm
holdLine          L:Km      L:Km      AL:Km     AL:KmR    L:Km      L:Knm     L:Knm     L:Km      L:Km      L:Km
holdPatch         A:K       A:K       A:K       A:KR      As:K      As:Kn     AS:Kn     Al:K      Al:Km     AL:Km
holdBlock         A         A:K       A:K       A:KR      As        As:Kn     AS:Kn     Al        Al:Km     AL:Km
releasePoint      a         a:K       A:K       Ar:KR     s         s:Kn      S:Kn      l         l:Km      L:Km
releaseFreePoint  a         a:K       A:K       Ar:KR     s         s:Kn      S:Kn      l         l:Km      L:Km
releaseDrag       a         a:K       A:K       Ar:KR     s         s:Kn      S:Kn      l         l:Km      L:Km
releasePatch      A         A:K       A:K       Ar:KR     s         s:Kn      S:Kn      l         l:Km      L:Km
releaseRemoval    a         a:K       A:K       A:KR      s         s:Kn      S:Kn      l         l:Km      L:Km
releaseSection    a         a:K       A:K       Ar:KR     s         S:Kn      S:Kn      l         l:Km      L:Km
releaseLine       a         a:K       A:K       Ar:KR     s         s:Kn      S:Kn      l         L:Km      L:Km
releaseCorrection a         a:K       A:K       Ar:KR     s         s:Kn      S:Kn      l         l:Km      L:Km
leavePoint        a         a         A         Ar:R      s         s:Kn      S:Kn      l         l:Km      L:Km
leaveCurve        a         a         A         Ar:R      -         -         -         -         -         -
leavePatch        -         :K        :K        :KR       s         s:Kn      S:Kn      l         l:Km      L:Km
showPoint         ak        ak:K      Ak:K      Ark:KR    sk        sk:Kn     Sk:Kn     lk        lk:Km     Lk:Km
dropPoint         a         a:K       A:K       Ar:KR     s         s:Kn      S:Kn      l         l:Km      L:Km
losePoint         a         a         A:K       Ar:KR     s         s:n       S:Kn      l         l:m       L:Km
dropPatches       -         -         -         :R        s         s:n       S:n       l         l:m       L:m
forgetPatch       a         a         A         Ar:R      s         s:n       S:n       l         l:m       L:m
forgetNumbers     a         a         A         Ar:R      s         s         S         l         l         L
forgetAll         -         -         -         -         -         -         -         -         -         -
)";

std::vector<std::vector<std::string>> cellsOf(const char* table) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::vector<std::string> row;
        for (std::string word; words >> word;) {
            row.push_back(word);
        }
        if (!row.empty()) {
            rows.push_back(row);
        }
    }
    return rows;
}

class EveryTransition : public testing::TestWithParam<const char*> {};

TEST_P(EveryTransition, OfEveryRegimeByEveryActIsTheOneOfTheTable) {
    const auto rows = cellsOf(GetParam());
    const std::vector<std::string>& before = rows.front();
    std::set<std::string> walked;
    for (std::size_t row = 1; row < rows.size(); ++row) {
        const std::string& act = rows[row].front();
        ASSERT_EQ(acts.count(act), 1U) << act;
        ASSERT_EQ(rows[row].size(), before.size()) << act;
        walked.insert(act);
        for (std::size_t column = 1; column < before.size(); ++column) {
            Capture capture = captureIn(before[column]);
            acts.at(act)(capture);
            EXPECT_EQ(written(*capture), rows[row][column]) << act << " from " << before[column];
        }
    }
    EXPECT_EQ(walked.size(), acts.size());
}

INSTANTIATE_TEST_SUITE_P(Capture, EveryTransition, testing::Values(fromPointRegimes, fromPatchAndCurveRegimes));

TEST(CaptureMoves, TellOfEveryEvent) {
    std::set<CaptureEvent> told;
    for (const CaptureMove& move : Capture::moves()) {
        told.insert(move.event);
    }
    EXPECT_EQ(told.size(), static_cast<std::size_t>(CaptureEvent::ForgetAll) + 1);
}

TEST(CaptureMoves, NeverSetWhatTheyClear) {
    for (const CaptureMove& move : Capture::moves()) {
        EXPECT_EQ(move.to & move.clears, 0) << static_cast<int>(move.event);
    }
}

TEST(CaptureTake, APointThatIsTooFarLeavesItsNumbersButNotItsPatch) {
    Capture capture = captureIn("pk:K");
    const zVec<double> before = capture->capturedPointPos;
    capture.take({Pick::Target::Point, false, 4, 5, 6, 0, {1, 2, 3}});
    EXPECT_EQ(written(*capture), "p:KNM");
    EXPECT_EQ(capture->capturedPatch, 7);
    EXPECT_EQ(capture->capturedPointSection, 5);
    EXPECT_EQ(capture->capturedPoint, 6);
    EXPECT_EQ(capture->capturedPointPos, before);
}

TEST(CaptureTake, APointIsNamedFromOne) {
    Capture capture = captureIn("p");
    capture.take({Pick::Target::Point, true, 4, 5, 6, 0, {1, 2, 3}});
    EXPECT_EQ(written(*capture), "pk:KNM");
    EXPECT_EQ(capture->capturedPointPos, (zVec<double>{1, 2, 3}));
    EXPECT_EQ(capture->pickedPoint, (zVec<double>{1, 2, 3}));
    EXPECT_EQ(capture->pointStatus,
              "Captured point: (Patch K=5, Section N=6, Point M=7) X=1.000000, Y=2.000000, Z=3.000000");
}

TEST(CaptureTake, ASectionThatIsTooFarLeavesThePatchOfTheNearestAlone) {
    Capture capture = captureIn("s:Kn");
    capture.take({Pick::Target::Section, false, 4, 5, 6, 0, {}});
    EXPECT_EQ(written(*capture), "s:K");
    EXPECT_EQ(capture->capturedPatch, 4);
}

TEST(CaptureTake, ALineThatIsTooFarLeavesTheLineBefore) {
    Capture capture = captureIn("l:KNm");
    capture.take({Pick::Target::Line, false, 4, 5, 6, 0, {}});
    EXPECT_EQ(written(*capture), "l:Km");
    EXPECT_EQ(capture->capturedPatch, 4);
    EXPECT_EQ(capture->capturedLine, 7);
}

TEST(CaptureTake, ANodeKeepsTheSectionOfAPoint) {
    Capture capture = captureIn("p:NM");
    capture.take({Pick::Target::Node, false, -1, -1, -1, 0, {}});
    EXPECT_EQ(written(*capture), "p:N");
}

TEST(CaptureTake, APlaceThatWasNotFoundChangesNothing) {
    Capture capture = captureIn("Pdk:KNM");
    capture.take({Pick::Target::DragPlace, false, -1, -1, -1, 0, {1, 2, 3}});
    capture.take({Pick::Target::PlanePlace, false, -1, -1, -1, 0, {1, 2, 3}});
    EXPECT_EQ(written(*capture), "Pdk:KNM");
    EXPECT_EQ(capture->capturedPointPos, zVec<double>());
    EXPECT_EQ(capture->dragStatus, "");
}

TEST(CaptureSaved, ComesBackOnceAndLeavesTheCurveThatWasNotSaved) {
    Capture capture = captureIn("Pk:KNMn");
    capture.savePoint();
    capture.renumberPatch(1);
    capture.renumberPoint(2, 3);
    capture.renumberSection(4);
    capture.restorePoint();
    EXPECT_EQ(capture->capturedPatch, 7);
    EXPECT_EQ(capture->capturedPointSection, 7);
    EXPECT_EQ(capture->capturedPoint, 7);
    EXPECT_EQ(capture->capturedSection, 4);
    EXPECT_EQ(capture->savedPatch, -1);
    EXPECT_EQ(capture->savedPoint, -1);
}

TEST(CaptureExchange, TurnsTheSectionIntoTheLineAndBack) {
    Capture capture = captureIn("S:Kn");
    capture.exchangeSectionAndLine();
    EXPECT_EQ(written(*capture), "L:Km");
    capture.exchangeSectionAndLine();
    EXPECT_EQ(written(*capture), "S:Kn");
}

} // namespace

} // namespace velmora
