#include <gmock/gmock.h>

#include "SessionFixture.h"

// Pictures as lines of a script.

namespace velmora {
namespace {

using test::fileText;
using test::SessionFixture;
using testing::HasSubstr;

class PictureLines : public SessionFixture {
protected:
    std::string drawn() const { return fileText(folder / "a.svg"); }
};

TEST_F(PictureLines, OfAnEmptyDocumentAreTheGround) {
    must("picture " + file("a.svg") + " width=30 height=20 ground=white");
    EXPECT_EQ(drawn(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"30\" height=\"20\">\n"
                       "<rect width=\"30\" height=\"20\" fill=\"#ffffff\"/>\n</svg>\n");
}

TEST_F(PictureLines, HaveTheSizeOfTheViewAndLeaveItAsItIs) {
    must("open " + file("plate.apt"));
    must("run view.zoomOut");
    const Json before = printed("view");
    const Json scene = printed("scene overlay");
    must("picture " + file("a.svg"));
    EXPECT_THAT(drawn(), HasSubstr("width=\"800\" height=\"600\""));
    must("picture " + file("a.svg") + " width=333 height=77 triad=0");
    EXPECT_THAT(drawn(), HasSubstr("width=\"333\" height=\"77\""));
    EXPECT_EQ(printed("view"), before);
    EXPECT_EQ(printed("scene overlay"), scene);
}

TEST_F(PictureLines, ShowTheWiresAndWithoutATriadNothingElse) {
    must("open " + file("plate.apt"));
    must("run view.surface");
    must("picture " + file("a.svg") + " triad=0");
    // Point (2, 2, 0) stands in the middle, 0.5 above it: 300 / 2.625 pixels are one unit.
    EXPECT_THAT(drawn(), HasSubstr("400 242.86"));
    EXPECT_THAT(drawn(), testing::Not(HasSubstr("<text")));
    const std::size_t without = drawn().size();
    must("picture " + file("a.svg"));
    EXPECT_GT(drawn().size(), without);
}

TEST_F(PictureLines, AreNoneOfTheJournal) {
    must("picture " + file("a.svg"));
    EXPECT_EQ(printed("journal"), Json::array());
}

TEST_F(PictureLines, WhatCannotBeDrawnIsAnError) {
    const std::string usage = "the line \"picture\" cannot be read so; write picture FILE [width=W height=H "
                              "ground=black|white|clear triad=0|1], sides from 1 to 16384";
    for (const char* words : {"", " a.svg width=0", " a.svg height=16385", " a.svg ground=grey", " a.svg triad=2",
                              " a.svg depth=3", " a.svg 3"}) {
        EXPECT_EQ(errorOf(std::string("picture") + words), usage) << words;
    }
    const std::string types = printed("version").at("picture").get<bool>()
                                  ? ".svg or .png"
                                  : ".svg; .png needs the package velmora and its OpenGL";
    EXPECT_EQ(errorOf("picture a.jpg"),
              "no picture of the type of \"a.jpg\" can be drawn here; give a file of type " + types);
    must("picture " + file("gone/a.svg"));
    EXPECT_EQ(event("done").value("outcome", ""), "failed");
}

TEST_F(PictureLines, TheCommandAsksForAFile) {
    must("open " + file("plate.apt"));
    must("run file.picture file=" + file("a.svg"));
    EXPECT_THAT(drawn(), HasSubstr("<path"));
    EXPECT_EQ(event("dialog").at("fields"), Json({{"width", 800}, {"height", 600}, {"ground", 1}, {"triad", 1}}));
    EXPECT_EQ(event("written").at("format"), "svg");
    EXPECT_EQ(event("written").at("path"), (folder / "a.svg").string());
    const Json chooser = event("chooser");
    const bool pixels = printed("version").at("picture").get<bool>(); // where the program for them is there
    EXPECT_EQ(chooser.at("extensions"), pixels ? Json::array({"png", "svg"}) : Json::array({"svg"}));
    EXPECT_EQ(chooser.at("proposed"), (folder / (pixels ? "plate.png" : "plate.svg")).string());
    must("run file.picture width=20 height=10 ground=2 triad=0 file=" + file("a.svg"));
    EXPECT_THAT(drawn(), HasSubstr("width=\"20\" height=\"10\""));
    EXPECT_THAT(drawn(), HasSubstr("fill=\"#ffffff\"/>"));
    must("run file.picture cancel=dialog");
    EXPECT_EQ(kinds("chooser"), 0);
    must("run file.picture file=" + file("a.jpg"));
    EXPECT_EQ(event("message").at("text"), "This file's type is not supported by Sorvane");
    EXPECT_EQ(event("done").value("outcome", ""), "refused");
}

TEST_F(PictureLines, AFileThatIsWrittenIsToldAndMayBeWrittenAgain) {
    must("open " + file("plate.apt"));
    for (const char* line : {"picture ", "journal "}) {
        const bool picture = std::string(line) == "picture ";
        for (int time = 0; time < 2; ++time) {
            must(line + file("a.svg"));
            EXPECT_EQ(kinds("written"), 1) << line << time;
            EXPECT_EQ(event("written"), Json({{"event", "written"},
                                              {"path", (folder / "a.svg").string()},
                                              {"bytes", std::filesystem::file_size(folder / "a.svg")},
                                              {"format", picture ? "svg" : "script"},
                                              {"counts", Json::object()}}));
        }
    }
}

TEST_F(PictureLines, TheClipboardIsOfTheWindow) {
    must("run file.copyPicture");
    EXPECT_EQ(event("message").at("text"), "The clipboard is the window's. A script has: picture FILE");
    EXPECT_EQ(event("done").value("outcome", ""), "refused");
}

} // namespace
} // namespace velmora
