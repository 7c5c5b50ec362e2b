#include "report_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::vector<std::string> textsOf(const std::vector<ReportLine>& lines) {
    std::vector<std::string> texts;
    for (const ReportLine& line : lines) {
        texts.push_back(line.text);
    }
    return texts;
}

/// Two squares of one cell each, a thousandth apart; the second has its last two points in one place.
std::vector<ReportLine> linesOfTwoPatches() {
    const PatchList patches = {{{{0, 0, 0}, {1, 0, 0}}, {{0, 1, 0}, {1, 1, 0}}},
                               {{{0, 1.001, 0}, {1, 1.001, 0}}, {{1, 3, 0}, {1, 3, 0}}}};
    return reportLines(modelReport(patches, zRegion_fe(), 2.0));
}

TEST(ReportLines, OfNoModelSaySo) {
    EXPECT_THAT(textsOf(reportLines(ModelReport())), ElementsAre("There is no model"));
}

TEST(ReportLines, BeginWithTheModelAsAWhole) {
    const auto texts = textsOf(linesOfTwoPatches());
    ASSERT_GE(texts.size(), 6U);
    EXPECT_EQ(texts[0], "From 0, 0, 0 to 1, 3, 0");
    EXPECT_EQ(texts[1], "Patches: 2; 4 sections, 8 points, 2 cells");
    EXPECT_THAT(texts[3], HasSubstr("Not closed: open edges of length "));
    EXPECT_EQ(texts[4], "Parts that hang together: 2");
    EXPECT_EQ(texts[5], "Gap between patches 1 and 2: 0.001");
}

TEST(ReportLines, NameTheWorstPlacesOfAPatchAndWhereTheyStand) {
    const auto lines = linesOfTwoPatches();
    const auto texts = textsOf(lines);
    EXPECT_THAT(texts, Contains("Patch 1, area 1"));
    EXPECT_THAT(texts, Contains("    1 repeated points, the first at section 2, point 2"));
    const auto repeated = std::find_if(lines.begin(), lines.end(), [](const ReportLine& line) {
        return line.text.find("repeated") != std::string::npos;
    });
    ASSERT_NE(repeated, lines.end());
    ASSERT_TRUE(repeated->place);
    EXPECT_THAT(*repeated->place, ElementsAre(1, 1, 1));
}

TEST(ReportLines, SayNothingOfWhatIsAsItShouldBe) {
    const PatchList square = {{{{0, 0, 0}, {1, 0, 0}}, {{0, 1, 0}, {1, 1, 0}}}};
    const auto texts = textsOf(reportLines(modelReport(square, zRegion_fe(), 1.0)));
    for (const char* words : {"repeated", "folded", "collapsed", "Gap", "more than two"}) {
        EXPECT_THAT(texts, Not(Contains(HasSubstr(words))));
    }
}

TEST(ReportLines, OfAZoneHaveItsSizesAndNoPlace) {
    ModelReport report;
    report.box = {zVec<double>(0, 0, 0), zVec<double>(1, 1, 1)};
    report.nodes = 4;
    report.triangles = 4;
    report.body.volume = 0.125;
    report.zones = {{"hull", 4, 4, 2.5, 1}};
    const auto lines = reportLines(report);
    const auto texts = textsOf(lines);
    EXPECT_THAT(texts, Contains("Zones: 1; 4 nodes, 4 triangles"));
    EXPECT_THAT(texts, Contains("Closed, volume 0.125"));
    EXPECT_EQ(texts.back(), "Zone 1 hull: 4 nodes, 4 triangles, area 2.5, 1 of them without an area");
    EXPECT_FALSE(lines.back().place);
}

} // namespace
} // namespace velmora
