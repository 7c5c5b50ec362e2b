#include <gtest/gtest.h>

#include <QColor>
#include <QImage>

#include "BatchSession.h"
#include "picture_program.h"
#include "qt_text.h"
#include "small_models.h"
#include "temporary_folder.h"

// Pictures of pixels by a program without a window: here nothing has a display.

namespace velmora::test {
namespace {

class LastEvents : public EventPrinter {
public:
    std::vector<Json> events;

    void print(const Json& event) override { events.push_back(event); }
};

class PictureProgram : public testing::Test {
protected:
    PictureProgram() {
        writeFileText(folder / "plate.apt", "2 2\n0 0 0\n4 0 0\n0 4 0\n4 4 0\n");
        must("open " + (folder / "plate.apt").string());
    }
    void must(const std::string& line) {
        printer.events.clear();
        ASSERT_EQ(session.run(1, line), BatchSession::Next::GoOn) << line << Json(printer.events).dump(2);
    }
    Json event(const char* kind) const {
        for (const Json& each : printer.events) {
            if (each.at("event") == kind) {
                return each;
            }
        }
        return Json::object();
    }
    QImage drawn(const std::string& settings) {
        const std::filesystem::path file = folder / "a.png";
        must("picture " + file.string() + ' ' + settings);
        EXPECT_EQ(event("done").value("outcome", ""), "ok") << Json(printer.events).dump(2);
        EXPECT_EQ(event("written").value("format", ""), "png");
        EXPECT_EQ(event("written").value("bytes", std::uintmax_t{0}), std::filesystem::file_size(file));
        return QImage(qtPath(file));
    }

    TemporaryFolder folder;
    LastEvents printer;
    BatchSession session{printer, {folder.path(), {800, 600}, false}};
};

TEST_F(PictureProgram, DrawsInAnySizeAndOnAnyGround) {
    must("print version");
    EXPECT_EQ(event("print").at("value").at("picture"), true);
    const QImage black = drawn("width=120 height=90 triad=0");
    EXPECT_EQ(black.size(), QSize(120, 90));
    EXPECT_EQ(black.pixelColor(0, 0), QColor(0, 0, 0));
    const QImage white = drawn("width=31 height=47 ground=white triad=0");
    EXPECT_EQ(white.size(), QSize(31, 47));
    EXPECT_EQ(white.pixelColor(0, 0), QColor(255, 255, 255));
    EXPECT_EQ(drawn("ground=clear triad=0").pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(drawn("triad=0").size(), QSize(800, 600));
}

TEST_F(PictureProgram, DrawsTheSurfaceTheRightWayUpAndTheTriadOnDemand) {
    must("run view.orthographic"); // the plate stands upright in the middle, as wide as it is high
    const QImage surface = drawn("width=400 height=200 triad=0");
    EXPECT_NE(surface.pixelColor(200, 100), QColor(0, 0, 0));
    EXPECT_EQ(surface.pixelColor(20, 100), QColor(0, 0, 0));
    EXPECT_EQ(surface.pixelColor(380, 100), QColor(0, 0, 0));
    EXPECT_NE(drawn("width=400 height=200"), surface);
    // Shifted up by a quarter of the view, its lower half is ground.
    must("run view.shift");
    must("mouse down 400 300");
    must("mouse move 400 0");
    const QImage shifted = drawn("width=400 height=200 triad=0");
    EXPECT_NE(shifted.pixelColor(200, 20), QColor(0, 0, 0));
    EXPECT_EQ(shifted.pixelColor(200, 180), QColor(0, 0, 0));
}

// The axis of X goes from 40 pixels right of the corner and 44 below it to 76, in red; three times as large from three
// times as far, and three times as thick.
TEST_F(PictureProgram, ALargePictureHasLargeAxes) {
    const QColor red(255, 0, 0);
    const QImage usual = drawn("width=800 height=600");
    const auto thicknessAt = [&red](const QImage& picture, int x, int top, int bottom) {
        int count = 0;
        for (int y = top; y < bottom; ++y) {
            count += picture.pixelColor(x, y) == red ? 1 : 0;
        }
        return count;
    };
    EXPECT_EQ(thicknessAt(usual, 70, 30, 60), 1);
    const QImage large = drawn("width=3600 height=2700");
    EXPECT_EQ(thicknessAt(large, 70, 0, 200), 0);
    EXPECT_EQ(thicknessAt(large, 210, 100, 160), 3);
}

TEST_F(PictureProgram, AFileThatCannotBeWrittenIsToldAndNoneIsLeft) {
    must("picture " + (folder / "none" / "a.png").string());
    EXPECT_EQ(event("done").value("outcome", ""), "failed");
    EXPECT_TRUE(event("written").empty());
    EXPECT_FALSE(std::filesystem::exists(folder / "none"));
}

TEST_F(PictureProgram, TheCommandOffersBothTypes) {
    must("run file.picture width=40 height=30 ground=2 triad=0 file=" + (folder / "b.png").string());
    EXPECT_EQ(event("chooser").at("extensions"), Json::array({"png", "svg"}));
    const QImage picture(qtPath(folder / "b.png"));
    EXPECT_EQ(picture.size(), QSize(40, 30));
    EXPECT_EQ(picture.pixelColor(0, 0), QColor(255, 255, 255));
}

} // namespace
} // namespace velmora::test
