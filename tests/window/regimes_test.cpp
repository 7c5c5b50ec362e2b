#include <gtest/gtest.h>

#include <QLabel>
#include <QToolButton>

#include "Desk.h"
#include "DocumentState.h"
#include "WindowDriver.h"
#include "mode_cursors.h"
#include "pixel_of.h"
#include "qt_text.h"

namespace velmora::test {
namespace {

const QString prompt = QStringLiteral("Press left button of mouse and drag it");
const QString findPatch = QStringLiteral("Find patch and click it");
const QString goOn = QStringLiteral("Press right button to continue");

const zVec<double> onFirst{0.4, 0.7, 0};
const zVec<double> onSecond{5.4, 0.7, 0};
const zVec<double> onThird{10.4, 0.7, 0};
/// Above the gap between two patches: too far for a point, a section or a patch.
const zVec<double> beside{4, 5, 0};

// ---- Looking ----------------------------------------------------------------------------------------------------

/// What the document holds, in words; the members of the zBlock count from 1.
std::string stateOf(const DocumentState& doc) {
    const std::pair<bool, const char*> flags[] = {
        {doc.capture->pointCaptureArmed, "point armed"},
        {doc.capture->pointCaptured, "point captured"},
        {doc.capture->freePointArmed, "free armed"},
        {doc.capture->freePointHeld, "free held"},
        {doc.capture->pointDragging, "dragging"},
        {doc.capture->patchCaptureArmed, "patch armed"},
        {doc.capture->patchCaptured, "patch captured"},
        {doc.capture->patchRemoving, "removing"},
        {doc.capture->sectionCaptureArmed, "section armed"},
        {doc.capture->sectionCaptured, "section captured"},
        {doc.capture->lineCaptureArmed, "line armed"},
        {doc.capture->lineCaptured, "line captured"},
        {doc.capture->dragCorrectsLine, "correcting"},
    };
    std::string words;
    for (const auto& [set, word] : flags) {
        words += set ? (words.empty() ? "" : ", ") + std::string(word) : "";
    }
    words = words.empty() ? "idle" : words;
    for (std::int32_t i = 0; i < doc.blockCount; ++i) {
        words += (i == 0 ? "; block " : " ") + std::to_string(doc.blockList[static_cast<std::size_t>(i)] + 1);
    }
    return words;
}

std::string state(WindowDriver& person) {
    return person.ask([] { return stateOf(WindowDriver::frame().state()); });
}

/// The mode whose cursor the view shows now, and no other's.
std::string cursor(WindowDriver& person) {
    return person.ask([]() -> std::string {
        const QCursor shown = WindowDriver::frame().centralWidget()->cursor();
        if (shown.shape() == Qt::ArrowCursor) {
            return "arrow";
        }
        std::string found;
        for (const auto& [mode, word] :
             {std::pair{ModePoint, "point"}, {ModePatch, "patch"}, {ModeSection, "section"}, {ModeLine, "line"}}) {
            found += shown.pixmap().toImage() == cursorOf(mode).pixmap().toImage() ? word : "";
        }
        return found;
    });
}

void expectState(WindowDriver& person, const std::string& words, const std::string& mode) {
    person.waitFor([&] { return stateOf(WindowDriver::frame().state()) == words; });
    EXPECT_EQ(state(person), words);
    EXPECT_EQ(cursor(person), mode);
}

/// A tool button below the menu that was just closed shows its help in the place of the status: the mouse goes away.
void expectStatus(WindowDriver& person, const QString& text) {
    person.move(person.onView({30, 30}));
    person.settle();
    person.waitFor([&] { return WindowDriver::frame().findChild<QLabel*>(QStringLiteral("message"))->text() == text; });
    EXPECT_EQ(person.status(), text);
}

// ---- Doing ------------------------------------------------------------------------------------------------------

/// The pixel of the view that shows a model point.
PixelPoint pixelOf(WindowDriver& person, const zVec<double>& point) {
    return person.ask([point] {
        MainFrame& frame = WindowDriver::frame();
        return velmora::test::pixelOf(frame.view(), frame.state(), point);
    });
}

void clickOn(WindowDriver& person, const zVec<double>& point) {
    person.click(person.onView(pixelOf(person, point)));
}

void openContextMenu(WindowDriver& person) {
    person.click(person.onView({30, 30}), WindowDriver::rightButton);
    if (!person.waitFor([] { return WindowDriver::openedMenu() != nullptr; })) {
        throw std::runtime_error("no context menu");
    }
}

/// Chooses an entry of the menu that a right click opens, by its words.
void fromContextMenu(WindowDriver& person, const char* entry) {
    openContextMenu(person);
    person.clickEntry(QString::fromLatin1(entry));
}

/// Reads the box that is open and answers it by a key.
void expectBox(WindowDriver& person, const char* name, const char* text, const char* key) {
    person.waitForBox(QString::fromLatin1(name));
    EXPECT_EQ(person.boxText(), QString::fromLatin1(text));
    person.key(key);
    EXPECT_TRUE(person.waitForNoBox());
}

void work(const std::function<void(WindowDriver&)>& person) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& driver) {
        driver.waitForFrame();
        driver.rest = std::chrono::milliseconds(80);
        ASSERT_EQ(state(driver), "idle");
        person(driver);
    });
}

// ---- Points -----------------------------------------------------------------------------------------------------

TEST(Regimes, APointIsCapturedAndTheNextOne) {
    work([](WindowDriver& person) {
        person.choose({"Edit", "Point", "Capture"});
        expectState(person, "point armed", "point");
        expectStatus(person, prompt);

        clickOn(person, beside);
        expectState(person, "point armed", "point");
        expectStatus(person, prompt);

        clickOn(person, {1, 1, 0});
        expectState(person, "point captured", "point");
        expectStatus(person, QStringLiteral("Captured point: (Patch K=1, Section N=2, Point M=2) X=1.000000, "
                                            "Y=1.000000, Z=0.000000 // Press right button to continue "));

        fromContextMenu(person, "Next point");
        expectState(person, "point armed", "point");
        expectStatus(person, prompt);
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().capture->capturedPoint; }), -1);

        clickOn(person, {6, 0, 0});
        expectState(person, "point captured", "point");
        expectStatus(person, QStringLiteral("Captured point: (Patch K=2, Section N=1, Point M=2) X=6.000000, "
                                            "Y=0.000000, Z=0.000000 // Press right button to continue "));

        fromContextMenu(person, "Exit");
        expectState(person, "idle", "arrow");
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().capture->capturedPatch; }), -1);
    });
}

TEST(Regimes, APointIsDraggedUntilTheButtonComesUp) {
    work([](WindowDriver& person) {
        person.choose({"Edit", "Point", "Capture"});
        clickOn(person, {1, 1, 0});
        fromContextMenu(person, "Drag point");
        expectState(person, "point captured, dragging", "point");
        expectStatus(person, prompt);

        person.move(person.onView(pixelOf(person, {1, 1, 0})));
        person.press();
        ASSERT_TRUE(person.waitFor([] { return WindowDriver::frame().view().leftButtonDown; }));
        const PixelPoint to = pixelOf(person, {1.5, 1.25, 0});
        person.move(person.onView(to));
        ASSERT_TRUE(person.waitFor([to] { return WindowDriver::frame().view().lastMousePos == to; }));
        const auto point = [] { return WindowDriver::frame().state().patches[0][1][1]; };
        const zVec<double> dragged = person.ask(point);
        // To the next point of the grid, whose steps are 2 / 99, from the pixel's own rounding.
        EXPECT_NEAR(dragged.x, 1.5, 0.03);
        EXPECT_NEAR(dragged.y, 1.25, 0.03);
        EXPECT_TRUE(person.status().startsWith(QStringLiteral("Drag point: X=1."))) << person.status().toStdString();
        EXPECT_EQ(state(person), "point captured, dragging");

        // The grid ends at the neighbours; the cursor at the view.
        const int below = person.ask([] { return WindowDriver::frame().view().viewport.height + 10; });
        person.move(person.onView({to.x, below}));
        EXPECT_TRUE(person.waitFor([] {
            const QWidget* view = WindowDriver::frame().centralWidget();
            return WindowDriver::frame().view().lastMousePos.y == view->height() - 1 &&
                   view->rect().contains(view->mapFromGlobal(QCursor::pos()));
        }));
        EXPECT_EQ(person.ask(point), dragged);
        person.release();
        ASSERT_TRUE(person.waitFor([] { return !WindowDriver::frame().view().leftButtonDown; }));
        expectState(person, "point captured", "point");
        expectStatus(person, QString::asprintf("Captured point: (Patch K=1, Section N=2, Point M=2) X=%f, Y=%f, Z=%f "
                                               "// Press right button to continue ",
                                               dragged.x, dragged.y, dragged.z));
        EXPECT_EQ(person.ask(point), dragged);
        const QPoint outside = person.onView({to.x, below});
        person.move(outside);
        person.settle();
        EXPECT_EQ(person.ask([] { return QCursor::pos(); }), outside) << "free again";
    });
}

// ---- Patches ----------------------------------------------------------------------------------------------------

TEST(Regimes, PatchesJoinTheZBlockAndLeaveIt) {
    work([](WindowDriver& person) {
        person.choose({"Edit", "Patches", "Capture"});
        expectState(person, "patch armed", "patch");
        expectStatus(person, findPatch);

        clickOn(person, beside);
        expectBox(person, "messageBox", "Patch is not selected. Try again", "Return");
        expectState(person, "patch armed", "patch");

        clickOn(person, onFirst);
        expectState(person, "patch captured; block 1", "patch");
        expectStatus(person, QStringLiteral("Captured patch: Patch K=1 // Press right button to continue "));
        fromContextMenu(person, "Add to zBlock");
        expectState(person, "patch armed; block 1", "patch");
        clickOn(person, onThird);
        expectState(person, "patch captured; block 1 3", "patch");
        fromContextMenu(person, "Add to zBlock");
        clickOn(person, onFirst);
        expectState(person, "patch captured; block 1 3", "patch");

        fromContextMenu(person, "Remove from zBlock");
        expectState(person, "patch captured, removing; block 1 3", "patch");
        expectStatus(person, findPatch);
        clickOn(person, beside);
        expectBox(person, "messageBox", "Patch is not removed from zBlock. Try again", "Return");
        expectState(person, "patch captured, removing; block 1 3", "patch");
        clickOn(person, onFirst);
        expectState(person, "patch captured; block 3", "patch");
        expectStatus(person, goOn);

        fromContextMenu(person, "New zBlock");
        expectState(person, "patch armed", "patch");
        clickOn(person, onSecond);
        expectState(person, "patch captured; block 2", "patch");
        fromContextMenu(person, "Remove from zBlock");
        clickOn(person, onSecond);
        expectState(person, "idle", "arrow");
        expectStatus(person, QStringLiteral("Choose any item from menu to continue"));
    });
}

TEST(Regimes, LeavingThePatchesEmptiesTheZBlockAndShowsAllAgain) {
    work([](WindowDriver& person) {
        person.choose({"Edit", "Patches", "Capture"});
        clickOn(person, onSecond);
        person.click(person.ask([] {
            for (const QToolButton* button : WindowDriver::frame().findChildren<QToolButton*>()) {
                if (button->defaultAction() != nullptr &&
                    button->defaultAction()->objectName() == QStringLiteral("block.only")) {
                    return button->mapToGlobal(button->rect().center());
                }
            }
            throw std::runtime_error("no button of Block only");
        }));
        const auto blockOnly = [] { return WindowDriver::frame().state().showBlockOnly; };
        EXPECT_TRUE(person.ask(blockOnly));
        EXPECT_EQ(state(person), "patch captured; block 2");
        fromContextMenu(person, "Exit");
        expectState(person, "idle", "arrow");
        EXPECT_FALSE(person.ask(blockOnly));
    });
}

TEST(Regimes, LeavingTheAddRegimeForACurveAsksFirst) {
    const char* const question = "Regime Add Patch to Block will be canceled. Are you sure?";
    work([question](WindowDriver& person) {
        person.choose({"Edit", "Patches", "Capture"});
        clickOn(person, onFirst);
        fromContextMenu(person, "Add to zBlock");
        const std::string before = person.ask([] { return WindowDriver::frame().state().status; });

        person.choose({"Edit", "Lines", "Capture", "Section"});
        expectBox(person, "questionBox", question, "Escape");
        expectState(person, "patch armed; block 1", "patch");
        expectStatus(person, qtText(before));

        fromContextMenu(person, "Capture Section");
        expectBox(person, "questionBox", question, "Return");
        expectState(person, "section armed; block 1", "section");
        expectStatus(person, prompt);
        clickOn(person, {6, 1, 0});
        expectState(person, "section captured; block 1", "section");

        fromContextMenu(person, "Gate to patch mode");
        expectState(person, "patch armed; block 1", "patch");
        fromContextMenu(person, "Capture Line");
        expectBox(person, "questionBox", question, "Return");
        expectState(person, "line armed; block 1", "line");
        expectStatus(person, prompt);
    });
}

// ---- Sections and lines -----------------------------------------------------------------------------------------

TEST(Regimes, ASectionIsCapturedWithAPointInside) {
    work([](WindowDriver& person) {
        person.choose({"Edit", "Lines", "Capture", "Section"});
        expectState(person, "section armed", "section");
        expectStatus(person, prompt);
        clickOn(person, beside);
        expectState(person, "section armed", "section");
        expectStatus(person, prompt);
        clickOn(person, {6, 1, 0});
        expectState(person, "section captured", "section");
        const QString section =
            QStringLiteral("Captured section: Patch K=2, Section N=2, Points M=4  // Press right button to continue ");
        expectStatus(person, section);

        person.choose({"Edit", "Point", "Capture"});
        expectState(person, "point armed, section captured", "point");
        clickOn(person, {6, 2, 0});
        expectState(person, "point armed, section captured", "point");
        expectStatus(person, prompt);
        clickOn(person, {7, 1, 0});
        expectState(person, "point captured, section captured", "point");
        expectStatus(person, QStringLiteral("Captured point: (Patch K=2, Section N=2, Point M=3) X=7.000000, "
                                            "Y=1.000000, Z=0.000000 // Press right button to continue "));
        fromContextMenu(person, "Free point");
        expectState(person, "point captured, free armed, section captured", "point");
        clickOn(person, {6, 2, 0});
        expectState(person, "point captured, free held, section captured", "point");
        fromContextMenu(person, "Exit");
        expectState(person, "section captured", "section");
        expectStatus(person, goOn);

        fromContextMenu(person, "Next Section (Line)");
        expectState(person, "section armed", "section");
        expectStatus(person, prompt);
        clickOn(person, {11, 0, 0});
        expectState(person, "section captured", "section");
        fromContextMenu(person, "Exit");
        expectState(person, "idle", "arrow");
    });
}

TEST(Regimes, ASectionInThePatchRegimeGoesBackToThePatches) {
    work([](WindowDriver& person) {
        person.choose({"Edit", "Patches", "Capture"});
        clickOn(person, onSecond);
        fromContextMenu(person, "Capture Section");
        expectState(person, "patch captured, section armed; block 2", "section");
        clickOn(person, {1, 1, 0});
        EXPECT_EQ(state(person), "patch captured, section armed; block 2") << "outside the zBlock";
        clickOn(person, {6, 1, 0});
        expectState(person, "patch captured, section captured; block 2", "section");
        fromContextMenu(person, "Exit");
        expectState(person, "patch captured; block 2", "patch");
        person.choose({"Edit", "Point", "Capture"});
        expectState(person, "point armed, patch captured; block 2", "point");
        fromContextMenu(person, "Exit");
        expectState(person, "patch captured; block 2", "patch");
        expectStatus(person, goOn);
    });
}

TEST(Regimes, ALineIsCapturedWithAFreePointBesideIt) {
    work([](WindowDriver& person) {
        person.choose({"Edit", "Lines", "Capture", "Line"});
        expectState(person, "line armed", "line");
        expectStatus(person, prompt);
        // In the corner of the view, nine units away: half of the diagonal is less than seven.
        person.click(person.onView({3, 3}));
        expectState(person, "line armed", "line");
        expectStatus(person, prompt);
        clickOn(person, {7.1, 3.5, 0});
        expectState(person, "line captured", "line");
        expectStatus(person, QStringLiteral("Captured line: Patch K=2, Line N=3, Points M=3  // Press right button to "
                                            "continue "));

        fromContextMenu(person, "Free point");
        expectState(person, "free armed, line captured", "line");
        clickOn(person, {6, 1, 0});
        expectState(person, "free held, line captured", "line");
        fromContextMenu(person, "Next Section (Line)");
        expectState(person, "line armed", "line");
        clickOn(person, {11, 1, 0});
        expectState(person, "line captured", "line");

        // A section takes the place of the line.
        person.choose({"Edit", "Lines", "Capture", "Section"});
        expectState(person, "section armed", "section");
        person.choose({"Edit", "Lines", "Capture", "Line"});
        expectState(person, "line armed", "line");
        clickOn(person, {11, 1, 0});
        fromContextMenu(person, "Exit");
        expectState(person, "idle", "arrow");
    });
}

// ---- Escape -----------------------------------------------------------------------------------------------------

TEST(Regimes, EscapeClosesAMenuFirstAndThenTheProgramInAnyRegime) {
    work([](WindowDriver& person) {
        person.choose({"Edit", "Point", "Capture"});
        clickOn(person, {1, 1, 0});
        openContextMenu(person);
        person.key("Escape");
        EXPECT_TRUE(person.waitFor([] { return WindowDriver::openedMenu() == nullptr; }));
        expectState(person, "point captured", "point");
        person.key("Escape");
        EXPECT_TRUE(person.waitForEnd());
    });
}

} // namespace
} // namespace velmora::test
