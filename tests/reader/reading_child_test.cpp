#include "reading_child.h"

#include <chrono>
#include <stdexcept>

#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

#include "reader_fixture.h"

namespace velmora {
namespace {

using Clock = std::chrono::steady_clock;

/// Programs in the place of the real one.
class ReadingChild : public test::ReaderTest {
protected:
    std::filesystem::path program(const std::string& lines) {
        const std::filesystem::path path = test::writeFileText(folder_ / "program", "#!/bin/sh\n" + lines + "\n");
        ::chmod(path.c_str(), 0755);
        return path;
    }
    ChildEnd run(const std::string& lines, const ReportProgress& report = {}) {
        return readInChild(program(lines), "any", folder_ / "a", options_, file_, report);
    }
    /// A shell's way to write a row of records.
    static std::string sending(const std::string& bytes) {
        std::string octal;
        for (const char c : bytes) {
            const auto value = static_cast<unsigned char>(c);
            octal += '\\';
            octal += static_cast<char>('0' + (value >> 6));
            octal += static_cast<char>('0' + (value >> 3 & 7));
            octal += static_cast<char>('0' + (value & 7));
        }
        return "printf '" + octal + "'";
    }
    static std::string records(const std::function<void(ForeignWriter&)>& write, bool end = true) {
        std::string bytes;
        ForeignWriter writer([&bytes](const char* data, std::size_t size) {
            bytes.append(data, size);
            return true;
        });
        write(writer);
        if (end) {
            writer.end();
        }
        return bytes;
    }

    ForeignFile file_;
};

TEST_F(ReadingChild, WhatItSendsComesAsItWas) {
    const std::string bytes = records([](ForeignWriter& out) {
        out.format("cgns");
        out.unit("inch");
        out.singlePrecision();
        out.lost("Lines", 3);
        out.lost("Nothing", 0);
        out.detail("Colours");
        out.changed("Turned");
        out.add(ForeignGrid{"grid", {2, 1, 1, {0, 1}, {2, 3}, {4, 5}}});
        FileMesh mesh;
        mesh.zones = {"a", "b"};
        mesh.addPoint(0, 0, 0.1);
        mesh.addPoint(1, 0, 0);
        mesh.addPoint(0, 1, 0);
        mesh.addPolygon({0, 1, 2});
        mesh.zoneOfPolygon = {1};
        out.add(mesh);
    });
    ASSERT_EQ(run(sending(bytes)), ChildEnd::Whole);
    EXPECT_EQ(file_.format, "cgns");
    EXPECT_EQ(file_.unit, "inch");
    EXPECT_TRUE(file_.singlePrecision);
    EXPECT_EQ(file_.lost, std::vector<std::string>{"Lines: 3"});
    EXPECT_EQ(file_.details, std::vector<std::string>{"Colours"});
    EXPECT_EQ(file_.changed, std::vector<std::string>{"Turned"});
    ASSERT_EQ(file_.parts.size(), 2U);
    const auto& grid = std::get<ForeignGrid>(file_.parts[0]);
    EXPECT_EQ(grid.title, "grid");
    EXPECT_EQ(grid.block.pointCount(), 2);
    EXPECT_EQ(grid.block.z, (std::vector<double>{4, 5}));
    const auto& mesh = std::get<FileMesh>(file_.parts[1]);
    EXPECT_EQ(mesh.zones, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(mesh.z, (std::vector<double>{0.1, 0, 0}));
    EXPECT_EQ(mesh.corners, (std::vector<std::int64_t>{0, 1, 2}));
    EXPECT_EQ(mesh.zoneOfPolygon, std::vector<std::int32_t>{1});
}

TEST_F(ReadingChild, OneThatDiesIsTold) {
    EXPECT_EQ(run("kill -SEGV $$"), ChildEnd::Died);
    EXPECT_EQ(run("kill -KILL $$"), ChildEnd::Died);
    EXPECT_EQ(run("exit 1"), ChildEnd::Died);
    EXPECT_EQ(run("exit 0"), ChildEnd::Died); // and gave no answer
    EXPECT_EQ(run("exit 2"), ChildEnd::Refused);
    EXPECT_EQ(run("exit 3"), ChildEnd::OutOfMemory);
    EXPECT_EQ(run("exit 4"), ChildEnd::Unreadable);
    EXPECT_EQ(run("kill -XCPU $$"), ChildEnd::TooLong);
    EXPECT_EQ(readInChild({}, "any", folder_ / "a", options_, file_, {}), ChildEnd::NoProgram);
}

TEST_F(ReadingChild, OneThatNeverEndsIsEnded) {
    options_.childSeconds = 1;
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(run("while :; do :; done"), ChildEnd::TooLong);
    EXPECT_EQ(run("exec >&-\nwhile :; do :; done"), ChildEnd::TooLong); // and closes its end
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(20));
}

TEST_F(ReadingChild, ItEndsWithTheCallWhenTheProgressThrows) {
    const std::filesystem::path mark = folder_ / "mark";
    EXPECT_THROW(run("echo $$ > " + mark.string() + "\nwhile :; do sleep 1; done",
                     [&mark](double) {
                         if (test::fileText(mark).ends_with('\n')) {
                             throw std::runtime_error("stop");
                         }
                     }),
                 std::runtime_error);
    EXPECT_NE(::kill(std::stoi(test::fileText(mark)), 0), 0);
}

TEST_F(ReadingChild, WhatIsNoAnswerIsNotBelieved) {
    EXPECT_NE(run("echo hello world, this is no row of records"), ChildEnd::Whole);
    EXPECT_EQ(run(sending("x" + std::string(8, '\0'))), ChildEnd::Died); // no such kind
    const std::string good = records([](ForeignWriter& out) {
        out.add(ForeignGrid{"", {2, 1, 1, {0, 1}, {2, 3}, {4, 5}}});
    });
    EXPECT_EQ(run(sending(good)), ChildEnd::Whole);
    EXPECT_EQ(run(sending(good + "x")), ChildEnd::Died);
    for (std::size_t size = 0; size < good.size(); size += 7) {
        EXPECT_EQ(run(sending(good.substr(0, size))), ChildEnd::Died) << size;
    }
}

// Lengths and numbers that do not fit together, as a process may send whose memory is destroyed.
TEST_F(ReadingChild, PartsMustHoldTogether) {
    const auto whole = [](const std::function<void(ForeignWriter&)>& write) {
        ForeignCollector collector(1 << 20);
        return collector.take(records(write)) && collector.isWhole();
    };
    const auto grid = [&whole](std::int64_t i, std::int64_t j, std::int64_t k, std::size_t points) {
        const std::vector<double> axis(points, 1.0);
        return whole([&](ForeignWriter& out) { out.add(ForeignGrid{"", {i, j, k, axis, axis, axis}}); });
    };
    EXPECT_TRUE(grid(2, 3, 1, 6));
    EXPECT_FALSE(grid(2, 3, 1, 5));
    EXPECT_FALSE(grid(2, 3, 2, 6));
    EXPECT_FALSE(grid(0, 3, 1, 0));
    EXPECT_FALSE(grid(-2, -3, 1, 6));
    EXPECT_FALSE(grid(std::int64_t{1} << 62, 4, 1, 1));
    EXPECT_FALSE(grid(1, 1, 1, 0));
    const auto mesh = [&whole](const std::function<void(FileMesh&)>& change) {
        FileMesh sample;
        sample.zones = {"a"};
        for (int i = 0; i < 3; ++i) {
            sample.addPoint(i, 0, 0);
        }
        sample.addPolygon({0, 1, 2});
        change(sample);
        return whole([&](ForeignWriter& out) { out.add(sample); });
    };
    EXPECT_TRUE(mesh([](FileMesh&) {}));
    EXPECT_TRUE(mesh([](FileMesh& m) { m.corners = {7, -1, 2}; })); // whoever makes zones of it looks at that
    EXPECT_FALSE(mesh([](FileMesh& m) { m.y.pop_back(); }));
    EXPECT_FALSE(mesh([](FileMesh& m) { m.polygonEnds = {2}; }));
    EXPECT_FALSE(mesh([](FileMesh& m) { m.polygonEnds = {4, 3}; }));
    EXPECT_FALSE(mesh([](FileMesh& m) { m.polygonEnds.clear(); }));
    EXPECT_FALSE(mesh([](FileMesh& m) { m.zoneOfPolygon = {1}; }));
    EXPECT_FALSE(mesh([](FileMesh& m) { m.zoneOfPolygon = {-1}; }));
    EXPECT_FALSE(mesh([](FileMesh& m) { m.zoneOfPolygon = {0, 0}; }));
}

TEST_F(ReadingChild, NoMoreIsTakenThanTheMemoryIsFor) {
    ForeignCollector collector(100);
    EXPECT_FALSE(collector.take(std::string(101, 'F')));
    EXPECT_TRUE(collector.isTooMuch());
    ForeignCollector claimed(1000);
    std::string head(9, '\xFF');
    head[0] = 'F';
    EXPECT_FALSE(claimed.take(head));
    EXPECT_TRUE(claimed.isTooMuch());
}

TEST_F(ReadingChild, TheRealOneStandsBesideThisProgram) {
    EXPECT_FALSE(readerProgram("cgns").empty());
    EXPECT_EQ(readInChild(readerProgram("cgns"), "no such format", folder_ / "a", options_, file_, {}),
              ChildEnd::Refused);
}

#ifdef VELMORA_READS_CAD
TEST_F(ReadingChild, CadHasAProgramOfItsOwnAndNeitherTakesTheOthersFiles) {
    EXPECT_EQ(readerProgram("step").filename(), "velmora-cad-reader");
    EXPECT_EQ(readerProgram("iges"), readerProgram("step"));
    EXPECT_EQ(readerProgram("vrml2").filename(), "velmora-reader");
    const std::filesystem::path file = test::writeFileText(folder_ / "a", "");
    EXPECT_EQ(readInChild(readerProgram("cgns"), "step", file, options_, file_, {}), ChildEnd::Refused);
    EXPECT_EQ(readInChild(readerProgram("step"), "cgns", file, options_, file_, {}), ChildEnd::Refused);
}
#endif

TEST_F(ReadingChild, WhatIsToldWhenItIsMissingNamesTheProgramAndItsPackage) {
    EXPECT_EQ(missingReader("iges"),
              "The program velmora-cad-reader of the package velmora-cad, which works on such files, is missing");
    EXPECT_EQ(missingReader("cgns"),
              "The program velmora-reader of the package velmora-readers, which works on such files, is missing");
}

} // namespace
} // namespace velmora
