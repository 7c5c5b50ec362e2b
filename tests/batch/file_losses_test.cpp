#include <gmock/gmock.h>

#include <fstream>

#include "SessionFixture.h"

// What scripts learn of files: nothing is lost without a reason, and what is no model takes no model's place.

namespace velmora {
namespace {

using test::fileText;
using test::flatPatch;
using test::SessionFixture;
using test::writeFileText;
namespace fs = std::filesystem;

class FileLosses : public SessionFixture {
protected:
    /// Every loss has a reason in words.
    void expectReasons(const std::string& what) const {
        for (const Json& read : events) {
            if (read.at("event") != "read") {
                continue;
            }
            const auto& reasons = read.at("reasons");
            EXPECT_EQ(read.at("lossless").get<bool>(), reasons.empty()) << what << ": " << read.dump();
            EXPECT_TRUE(read.at("lossless").get<bool>() <= read.at("complete").get<bool>()) << what;
            for (const Json& reason : reasons) {
                EXPECT_GT(reason.get<std::string>().size(), 10U) << what << ": " << read.dump();
                EXPECT_EQ(reason.get<std::string>().find('\n'), std::string::npos) << what << ": " << read.dump();
            }
        }
    }

    /// Opens and imports the file, the model of the session standing.
    void readEverySide(const std::string& path, const std::string& what) {
        run("open " + path);
        expectReasons(what + ", opened");
        run("run file.import answer=yes file=" + path);
        expectReasons(what + ", imported");
        run("run file.import answer=yes merge=1 scale=2 volumes=2 file=" + path);
        expectReasons(what + ", imported with changes");
    }

    bool isRead(const std::string& line) {
        run(line);
        return kinds("read") > 0;
    }
};

TEST_F(FileLosses, EveryLossOfEveryRealFileHasAReason) {
    int files = 0;
    for (const char* const from : {VELMORA_TEST_DATA, VELMORA_EXAMPLES}) {
        for (const fs::directory_entry& entry : fs::directory_iterator(from)) {
            const std::string extension = entry.path().extension().string();
            if (!entry.is_regular_file() || extension == ".md" || extension == ".py" || extension == ".txt") {
                continue;
            }
            ++files;
            readEverySide('"' + entry.path().string() + '"', entry.path().filename().string());
        }
    }
    EXPECT_GT(files, 35);
}

TEST_F(FileLosses, WhatIsAlteredOnTheWayIsTheReasonWhereThereIsNoOther) {
    const std::string vertices = "outer loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 2 0 0\nendloop\nendfacet\n";
    std::string thinned = "2 100502\n";
    for (int point = 0; point < 2 * 100502; ++point) {
        thinned += "0 0 0\n";
    }
    bool hadModel = false;
    for (const auto& [name, text] : std::vector<std::pair<std::string, std::string>>{
             {"degenerate.stl", "solid a\nfacet normal 0 0 1\n" + vertices + "endsolid a\n"},
             {"square.off", "OFF\n4 1 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n4 0 1 2 3\n"},
             {"beside.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 5 5 5\nf 1 2 3\n"},
             {"squares.dat", "VARIABLES = \"x\" \"y\" \"z\"\nZONE N=4, E=1, F=FEPOINT, ET=QUADRILATERAL\n"
                             "0 0 0\n1 0 0\n1 1 0\n0 1 0\n1 2 3 4\n"},
             {"thinned.apt", thinned}}) {
        writeFileText(folder / name, text);
        const bool foreign = name.ends_with("off") || name.ends_with("obj");
        ASSERT_TRUE(isRead((foreign ? "run file.import file=" : "open ") + file(name) +
                           (foreign && hadModel ? " answer=yes" : "")))
            << name;
        hadModel = true;
        EXPECT_EQ(event("read").at("lossless"), false) << name;
        EXPECT_EQ(event("read").at("complete"), true) << name;
        ASSERT_EQ(event("read").at("reasons").size(), 1U) << name;
        EXPECT_EQ(event("read").at("reasons").at(0).get<std::string>(),
                  "A save would not bring back: " + event("read").at("changed").at(0).get<std::string>())
            << name;
    }
}

TEST_F(FileLosses, OfAFileThatGivesNoModelNothingIsKept) {
    for (const auto& [name, text] : std::vector<std::pair<std::string, std::string>>{
             {"a.apt", "-1 5\n"}, {"b.apt", "0 5\n"}, {"c.apt", "2 0\n"}, {"d.apt", "x\n"}, {"e.skl", "0\n0\n"}}) {
        writeFileText(folder / name, text);
        must("open " + file(name));
        EXPECT_EQ(event("done").value("outcome", ""), "failed") << name;
        const Json kept = event("read").at("kept");
        for (const Json& count : kept) {
            EXPECT_EQ(count, 0) << name;
        }
    }
}

// ---- The place of a model ---------------------------------------------------------------------------------------------

class ModelPlaces : public SessionFixture {
protected:
    /// The line fails, tells why, and leaves the file.
    void expectRefused(const std::string& line, const std::string& name) {
        const std::string before = fileText(folder / name);
        must(line);
        EXPECT_EQ(event("done").value("outcome", ""), "failed") << line;
        EXPECT_EQ(event("message").value("text", ""), name + " holds a model of this session and is not written over")
            << line;
        EXPECT_EQ(event("message").value("severity", ""), "error") << line;
        EXPECT_EQ(fileText(folder / name), before) << line;
    }
    void expectWritten(const std::string& line) {
        must(line);
        EXPECT_EQ(event("done").value("outcome", ""), "ok") << line;
        EXPECT_EQ(kinds("message"), 0) << line;
    }
};

TEST_F(ModelPlaces, AreNotTakenByAJournal) {
    expectWritten("journal " + file("plate.apt")); // nothing was read yet: it is a file like any other
    writeFileText(folder / "plate.apt", aptText({flatPatch(4, 5)}));
    must("open " + file("plate.apt"));
    expectRefused("journal " + file("plate.apt"), "plate.apt");
    must("run file.saveAs file=" + file("saved.apt"));
    expectRefused("journal " + file("saved.apt"), "saved.apt");
    must("run file.export file=" + file("out.obj"));
    expectRefused("journal " + file("out.obj"), "out.obj");
    must("open " + file("saved.apt"));
    expectRefused("journal " + file("plate.apt"), "plate.apt");
    expectWritten("journal " + file("a.script"));
    expectWritten("journal " + file("a.script"));
}

TEST_F(ModelPlaces, AreNotTakenByAnyOtherName) {
    must("open " + file("plate.apt"));
    fs::create_symlink(folder / "plate.apt", folder / "link.script");
    fs::create_hard_link(folder / "plate.apt", folder / "hard.script");
    fs::create_symlink(folder.path(), folder / "here");
    expectRefused("journal " + file("link.script"), "link.script");
    expectRefused("journal " + file("hard.script"), "hard.script");
    expectRefused("journal " + file("here/plate.apt"), "plate.apt");
    EXPECT_TRUE(fs::is_symlink(folder / "link.script"));
    fs::rename(folder / "plate.apt", folder / "moved.script");
    expectRefused("journal " + file("moved.script"), "moved.script");
}

TEST_F(ModelPlaces, ThatAreEmptyNowAreFree) {
    must("open " + file("plate.apt"));
    fs::remove(folder / "plate.apt");
    expectWritten("journal " + file("plate.apt"));
    EXPECT_THAT(fileText(folder / "plate.apt"), testing::StartsWith("open "));
}

TEST_F(ModelPlaces, AreNotTakenByAPicture) {
    must("open " + file("plate.apt"));
    fs::create_symlink(folder / "plate.apt", folder / "a.svg");
    expectRefused("picture " + file("a.svg"), "a.svg");
    must("run file.picture file=" + file("a.svg"));
    EXPECT_EQ(event("message").value("text", ""), "a.svg holds a model of this session and is not written over");
    EXPECT_EQ(fileText(folder / "plate.apt"), aptText({flatPatch(4, 5)}));
    expectWritten("picture " + file("b.svg"));
    expectWritten("picture " + file("b.svg"));
}

TEST_F(ModelPlaces, AreThoseOfFilesThatWereReadBesideTheModelToo) {
    must("open " + file("plate.apt"));
    writeFileText(folder / "points.ext", "0 0 0\n1 2 3\n");
    must("run buffer.open file=" + file("points.ext"));
    expectRefused("journal " + file("points.ext"), "points.ext");
}

} // namespace
} // namespace velmora
