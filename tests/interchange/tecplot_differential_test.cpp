// The reader beside its plain transcription, on cut, damaged and random files.

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tecplot_reference.h"
#include "tecplot_tools.h"

namespace velmora {
namespace {

using namespace std::string_view_literals;
using Plain = reference::TecplotReader;

template <class Zone>
std::vector<Plain::Array> arraysOf(const Zone& zone) {
    std::vector<Plain::Array> arrays;
    for (const auto& variable : zone.variables) {
        arrays.push_back({variable->name, variable->data});
    }
    return arrays;
}

// Both kinds in one list, the structured ones first.
std::vector<Plain::Zone> zonesOf(const test::TecplotOutcome& outcome) {
    std::vector<Plain::Zone> zones;
    for (const auto& zone : outcome.structured.blocks) {
        zones.push_back({zone->title, true, zone->imax, zone->jmax, zone->kmax, arraysOf(*zone), {}});
    }
    for (const auto& zone : outcome.unstructured.blocks) {
        zones.push_back(
            {zone->title, false, zone->nodeCount, zone->elementCount, 0, arraysOf(*zone), zone->connectivity});
    }
    return zones;
}

class TecplotDifferentialTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;

    void compare(std::string_view text) const { compareFile(test::writeFileText(folder_ / "a.dat", text)); }

    static void compareFile(const std::filesystem::path& path) {
        Plain plain;
        plain.read(path);
        const bool bothKinds = !plain.fault && mixed(plain.zones);
        for (const bool coordinatesOnly : {true, false}) {
            const test::TecplotOutcome outcome = test::readTecplot(path, coordinatesOnly);
            ASSERT_EQ(test::errorText(outcome), plain.fault ? plain.fault->name + ": " + plain.fault->text : "");
            if (bothKinds) { // the structured ones became triangles
                ASSERT_TRUE(outcome.structured.blocks.empty());
                continue;
            }
            ASSERT_TRUE(zonesOf(outcome) == expectedZones(plain.zones, coordinatesOnly));
            if (!plain.fault && !plain.zones.empty()) {
                ASSERT_EQ(plain.zones[0].ordered ? outcome.structured.title : outcome.unstructured.title, plain.title);
            }
        }
    }

    static bool mixed(const std::vector<Plain::Zone>& zones) {
        std::size_t ordered = 0;
        for (const Plain::Zone& zone : zones) {
            ordered += zone.ordered ? 1 : 0;
        }
        return ordered > 0 && ordered < zones.size();
    }

    static std::vector<Plain::Zone> expectedZones(const std::vector<Plain::Zone>& zones, bool coordinatesOnly) {
        std::vector<Plain::Zone> expected;
        for (const bool ordered : {true, false}) {
            for (const Plain::Zone& zone : zones) {
                if (zone.ordered == ordered) {
                    expected.push_back(zone);
                    if (coordinatesOnly && zone.arrays.size() > 3) {
                        expected.back().arrays.resize(3);
                    }
                }
            }
        }
        return expected;
    }
};

const std::vector<std::string> goodFiles = {
    // Comments, lists, extra variables, both packings, a record between zones, all the elements, no line feed at the
    // end.
    "# made by hand\nTITLE = \"a b\"\nVARIABLES = \"p\", \"Y\" \"x/m\"\n\"X\",\"z\"\n"
    "ZONE T=\"one 1 2 3\", I=2, J=3, K=1, F=POINT\n0 1 2 3 4\n5 6 7 8 9\n.5 -1e3 2 3 4\n1 2 3 4 5\n1 1 1 1 1\n2 2 2 2 "
    "2\n"
    "TEXT X=1, Y=2, T=\"Z\"\nGIMM_ZONE: 3\n"
    "ZONE I=2 J=2 K=1 DT=(SINGLE SINGLE) PASSIVEVARLIST=[1,3-3] C=RED\n1 2 3 4\n5 6 7 8\n\n9 10 11 12",
    "TITLE=\"\" VARIABLES=\"x\"\"y\"\"z\" FILETYPE=FULL\nZONE T=\"tri\" N=3,E=2,F=FEPOINT,ET=TRIANGLE\n0 0 0\n1 0 0\n0 "
    "1 0\n"
    "1 2 3\n3 2 1\nZONE NODES=4 ELEMENTS=1 ZONETYPE=FEQUADRILATERAL\n0 1 1 0\n0 0 1 1\n0 0 0 0\n1 2 3 4\n"
    "ZONE N=2 E=1 ET=FELINESEG F=POINT\n0 0 0\n1 1 1\n1 2\nZONE I=3, J=4\n1 2 3 4\nZONE N=1 E=1 ET=BRICK F=BLOCK\n1 2 "
    "3\n"
    "1 1 1 1 1 1 1 1\nzone I=1\nZone T=\"last\" N=1 ET=TRIANGLE F=POINT\n7 8 9\n",
    "1 2 3\n-4 .5e1\nvariables = \"x\" \"y\" \"z\" \"X\"\nzone t=\"w\" PASSIVEVARLIST = [ 2 , 3 - 4 ] k=1 j=2 i=2 "
    "f=point "
    "# 1 2 3\n1\n2\n3\n4\nZONE I=2,J=2,K=1,F=POINT\n1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\n",
    "ZONE T=\"bare\" I=2 J=2 F=POINT\n1 2 3\nZONE K=1 I=2 J=2\nZONE ET=TETRAHEDRON N=9 E=0 \n1 2 3\n"};

TEST_F(TecplotDifferentialTest, GoodFilesAreRead) {
    for (const std::string& text : goodFiles) {
        Plain plain;
        plain.read(test::writeFileText(folder_ / "a.dat", text));
        EXPECT_FALSE(plain.fault) << plain.fault->text;
        EXPECT_FALSE(plain.zones.empty());
        compare(text);
    }
}

TEST_F(TecplotDifferentialTest, AFileCutAtAnyByteGivesWhatThePlainReaderGives) {
    for (const std::string& text : goodFiles) {
        for (std::size_t size = 0; size <= text.size(); ++size) {
            SCOPED_TRACE(text.substr(0, size));
            compare(text.substr(0, size));
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST_F(TecplotDifferentialTest, AFileWithAnyByteChangedGivesWhatThePlainReaderGives) {
    for (const std::string& text : goodFiles) {
        constexpr std::string_view wrong = "x \n-[\"#9=Z,\0\xE4"sv;
        for (std::size_t place = 0; place < text.size(); ++place) {
            for (std::size_t turn = 0; turn < 3; ++turn) { // all of them in turn along the file
                std::string changed = text;
                changed[place] = wrong[(3 * place + turn) % wrong.size()];
                SCOPED_TRACE(changed);
                compare(changed);
                ASSERT_FALSE(HasFatalFailure());
            }
        }
    }
}

TEST_F(TecplotDifferentialTest, AFileWithAnyByteTakenOutGivesWhatThePlainReaderGives) {
    for (const std::string& text : goodFiles) {
        for (std::size_t place = 0; place < text.size(); ++place) {
            std::string changed = text;
            changed.erase(place, 1);
            SCOPED_TRACE(changed);
            compare(changed);
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST_F(TecplotDifferentialTest, RandomSequencesOfPiecesGiveWhatThePlainReaderGives) {
    const std::vector<std::string> pieces = {"TITLE",
                                             "VARIABLES",
                                             "ZONE",
                                             "ZONE ",
                                             "\nZONE ",
                                             "zone ",
                                             "Z",
                                             "FILETYPE=FULL ",
                                             "=",
                                             " = ",
                                             "\"",
                                             "\"a b\"",
                                             "\"x\"",
                                             "\"x\" \"y\" \"z\"",
                                             "\"Y\",",
                                             "VARIABLES=\"x\" \"y\" \"z\"\n",
                                             "VARIABLES = \"z\", \"x\" \"p\" \"Y\" ",
                                             "T=\"t\"",
                                             "I=2 ",
                                             "J=2,",
                                             "K=1 ",
                                             "I=",
                                             "I",
                                             "J=3 ",
                                             "N=3 ",
                                             "NODES=1,",
                                             "E=1 ",
                                             "ELEMENTS=2 ",
                                             "F=POINT ",
                                             "F=BLOCK\n",
                                             "DATAPACKING=FEPOINT\n",
                                             "F=X",
                                             "ET=TRIANGLE ",
                                             "ZONETYPE=FEQUADRILATERAL\n",
                                             "ET=FEBRICK ",
                                             "ET=LINESEG ",
                                             "ET=ORDERED",
                                             "PASSIVEVARLIST=[",
                                             "PASSIVEVARLIST=[2]",
                                             "PASSIVEVARLIST=[1-3] ",
                                             "]",
                                             "[",
                                             "1",
                                             "2",
                                             "3 ",
                                             "-",
                                             ",",
                                             "\n",
                                             " ",
                                             "\t",
                                             "\r\n",
                                             "#",
                                             "# c\n",
                                             "1 2 3\n",
                                             "0.5 1e3 -2\n",
                                             "1 2 3 4 5 6 7 8 9 10 11 12\n",
                                             "1e",
                                             "99999999999 ",
                                             "nan ",
                                             "\v",
                                             "_",
                                             "1 2 3 4\n",
                                             "2147483647 "};
    std::mt19937 random(20240611);
    const auto pick = [&random](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    for (int round = 0; round < 3000; ++round) {
        std::string text = pick(2) == 0 ? "VARIABLES=\"x\" \"y\" \"z\"\nZONE " : "";
        for (std::size_t count = pick(24); count > 0; --count) {
            text += pieces[pick(pieces.size())];
        }
        SCOPED_TRACE(text);
        compare(text);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(TecplotDifferentialTest, RealFilesGiveWhatThePlainReaderGives) {
    for (const char* const name : {"cell_centred", "coloured_ring", "half_cylinder", "m100_wingbody_block",
                                   "nemoh_cylinder", "nemoh_cylinder_zone1", "plates_and_geometries", "split_volume",
                                   "tetrahedra", "unquoted_panels", "volume_block", "wamit_cyl_pan", "wing717_point"}) {
        SCOPED_TRACE(name);
        compareFile(std::filesystem::path(VELMORA_TEST_DATA) / (std::string(name) + ".dat"));
    }
}

} // namespace
} // namespace velmora
