#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cmath>
#include <sstream>

#include "Desk.h"
#include "DocumentState.h"
#include "Process.h"
#include "WindowDriver.h"
#include "camera.h"

namespace velmora::test {
namespace {

/// A section that a click surely hits: its number, from 0, and the pixel of one of its points.
struct Target {
    std::int32_t patch = 0;
    std::int32_t section = 0;
    PixelPoint pixel;
};

struct SeenPoint {
    std::int32_t patch;
    std::int32_t section;
    double x;
    double y;
};

/// Every third point of the model where it stands in the view.
std::vector<SeenPoint> pointsInView(MainFrame& frame) {
    VelmoraView& view = frame.view();
    const PatchList& patches = frame.state().patches;
    std::vector<SeenPoint> points;
    for (std::size_t k = 0; k < patches.size(); ++k) {
        for (std::size_t n = 0; n < patches[k].size(); ++n) {
            for (const zVec<double>& point : patches[k][n]) {
                const auto at = projectPoint(point, view.modelViewMatrix, view.projectionMatrix, view.viewport);
                points.push_back({static_cast<std::int32_t>(k), static_cast<std::int32_t>(n), at->x, at->y});
            }
        }
    }
    return points;
}

/// The point that stands farthest in the picture from every point of any other section.
Target loneliestSection(MainFrame& frame) {
    const std::vector<SeenPoint> points = pointsInView(frame);
    const SeenPoint* best = nullptr;
    double farthest = -1.0;
    for (std::size_t i = 0; i < points.size(); i += 7) {
        double nearest = 1e30;
        for (const SeenPoint& other : points) {
            if (other.patch != points[i].patch || other.section != points[i].section) {
                nearest = std::min(nearest, std::hypot(other.x - points[i].x, other.y - points[i].y));
            }
            if (nearest <= farthest) {
                break;
            }
        }
        if (nearest > farthest) {
            farthest = nearest;
            best = &points[i];
        }
    }
    EXPECT_GT(farthest, 3.0) << "no section stands clear of the others";
    return {best->patch,
            best->section,
            {static_cast<int>(std::lround(best->x)),
             frame.view().viewport.height - 1 - static_cast<int>(std::lround(best->y))}};
}

/// Opens Rebreak by the context menu, chooses all sections with the mouse and types the number of points.
void rebreakTo(WindowDriver& person, const Target& target, const std::string& count, bool firstTime) {
    person.click(person.onView(target.pixel), WindowDriver::rightButton);
    ASSERT_TRUE(person.waitFor([] {
        return WindowDriver::openedMenu() != nullptr && WindowDriver::openedMenu()->objectName() == "Line Context";
    }));
    if (firstTime) {
        person.screenshot(QStringLiteral("context-menu"));
    }
    person.clickEntry(QStringLiteral("Rebreak..."));
    person.waitForBox(QStringLiteral("CRebreak"));
    person.clickWidget(QStringLiteral("regime.2"));
    const auto focused = [] { return QApplication::focusWidget()->objectName(); };
    for (int tab = 0; tab < 10 && person.ask(focused) != QStringLiteral("newCount"); ++tab) {
        person.key("Tab");
        person.settle();
    }
    ASSERT_EQ(person.ask(focused), QStringLiteral("newCount"));
    person.type(count);
    if (firstTime) {
        person.screenshot(QStringLiteral("rebreak-dialog"));
    }
    person.key("Return");
    ASSERT_TRUE(person.waitForNoBox());
}

std::vector<std::size_t> pointCounts(WindowDriver& person, const Target& target) {
    return person.ask([target] {
        std::vector<std::size_t> counts;
        for (const PointList& section : WindowDriver::frame().state().patches[static_cast<std::size_t>(target.patch)]) {
            counts.push_back(section.size());
        }
        return counts;
    });
}

/// What the script front end makes of the same road with a copy of the same file.
std::string bytesOfScript(const Target& target, const Viewport& viewport, const std::string& behindCapture) {
    const Desk desk;
    std::ostringstream script;
    script << "size " << viewport.width << ' ' << viewport.height << "\nopen m100_wingbody.apt\n"
           << "run line.captureSection\n"
           << "mouse down " << target.pixel.x << ' ' << target.pixel.y << "\nmouse up " << target.pixel.x << ' '
           << target.pixel.y << '\n'
           << behindCapture;
    const ProcessResult result = runProcess({VELMORA_BATCH, "-"}, desk.model.parent_path(), script.str());
    EXPECT_EQ(result.status, 0) << result.errors << (result.lines.empty() ? "" : result.lines.back());
    return fileText(desk.model);
}

/// What the script front end makes of the window's journal with a copy of the file at `original`.
std::string bytesOfJournal(const std::vector<std::string>& lines, const std::filesystem::path& original) {
    const Desk desk;
    std::string script;
    for (std::string line : lines) {
        if (const auto at = line.find(original.string()); at != std::string::npos) {
            line.replace(at, original.string().size(), desk.model.string());
        }
        script += line + '\n';
    }
    const ProcessResult result = runProcess({VELMORA_BATCH, "-"}, desk.model.parent_path(), script);
    EXPECT_EQ(result.status, 0) << script << result.errors << (result.lines.empty() ? "" : result.lines.back());
    return fileText(desk.model);
}

TEST(Road, CaptureRebreakSaveAndExitWriteWhatTheScriptWrites) {
    const Desk desk;
    const std::string original = fileText(desk.model);
    Target target;
    Viewport viewport;
    std::string saved;
    std::vector<std::string> journal;
    const int status = runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        EXPECT_EQ(person.title(), QStringLiteral("m100_wingbody.apt[*] - Velmora"));
        EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
        person.screenshot(QStringLiteral("frame"));

        person.choose({"Edit", "Lines", "Capture", "Section"});
        EXPECT_EQ(person.status(), QStringLiteral("Press left button of mouse and drag it"));
        target = person.ask([] { return loneliestSection(WindowDriver::frame()); });
        viewport = person.ask([] { return WindowDriver::frame().view().viewport; });
        person.click(person.onView(target.pixel));
        ASSERT_TRUE(person.waitFor([] { return WindowDriver::frame().state().capture->sectionCaptured; }));
        const std::size_t points = pointCounts(person, target)[static_cast<std::size_t>(target.section)];
        EXPECT_EQ(person.status(),
                  QStringLiteral("Captured section: Patch K=%1, Section N=%2, Points M=%3  // Press right button to "
                                 "continue ")
                      .arg(target.patch + 1)
                      .arg(target.section + 1)
                      .arg(points));
        person.screenshot(QStringLiteral("captured-section"));

        rebreakTo(person, target, "41", true);
        EXPECT_THAT(pointCounts(person, target), ::testing::Each(41U));
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().isWindowModified(); }));
        EXPECT_EQ(fileText(desk.model), original) << "nothing is written before Save";
        person.key("s", "Control_L");
        ASSERT_TRUE(person.waitFor([] { return !WindowDriver::frame().state().documentModified; }));
        saved = fileText(desk.model);
        journal = person.ask([] { return WindowDriver::frame().session().journal().lines(); });

        rebreakTo(person, target, "31", false);
        EXPECT_THAT(pointCounts(person, target), ::testing::Each(31U));
        EXPECT_EQ(fileText(desk.model), saved);
        person.choose({"File", "Exit"});
        person.waitForBox(QStringLiteral("questionBox"));
        EXPECT_EQ(person.boxText(), QStringLiteral("Save data before exit"));
        person.screenshot(QStringLiteral("question"));
        person.key("y", "Alt_L");
        EXPECT_TRUE(person.waitForEnd());
    });
    EXPECT_EQ(status, 0);
    ASSERT_FALSE(saved.empty());
    EXPECT_NE(saved, original);

    EXPECT_EQ(journal, (std::vector<std::string>{"open " + desk.model.string(), "run line.captureSection",
                                                 "capture section " + std::to_string(target.patch + 1) + ' ' +
                                                     std::to_string(target.section + 1),
                                                 "run line.rebreak regime=2 newCount=41", "run file.save"}));
    EXPECT_EQ(saved, bytesOfJournal(journal, desk.model)) << "the mouse by number";
    const std::string toFirstSave = "run line.rebreak regime=2 newCount=41\nrun file.save\n";
    EXPECT_EQ(saved, bytesOfScript(target, viewport, toFirstSave));
    EXPECT_EQ(fileText(desk.model),
              bytesOfScript(target, viewport, toFirstSave + "run line.rebreak newCount=31\nquit answer=yes\n"));
}

TEST(Road, AFileThatDoesNotOpenEndsTheStart) {
    const TemporaryFolder folder;
    const std::string missing = (folder / "missing.apt").string();
    const int status = runProgram({missing}, [](WindowDriver& person) {
        // Every box of the failing start is acknowledged.
        QString text;
        while (text != QStringLiteral("Open procedure is canceled")) {
            person.waitForBox(QStringLiteral("messageBox"));
            text = person.boxText();
            person.key("Return");
        }
        EXPECT_TRUE(person.waitForEnd());
    });
    EXPECT_EQ(status, 1);
}

TEST(Road, WithoutAFileTheProgramStartsEmpty) {
    const int status = runProgram({}, [](WindowDriver& person) {
        person.waitForFrame();
        EXPECT_EQ(person.title(), QStringLiteral("Untitled[*] - Velmora"));
        EXPECT_EQ(person.status(), QStringLiteral("For Help, press F1"));
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().structureKind; }), StructureKind::None);
        person.choose({"File", "Exit"});
        EXPECT_TRUE(person.waitForEnd());
    });
    EXPECT_EQ(status, 0);
}

} // namespace
} // namespace velmora::test
