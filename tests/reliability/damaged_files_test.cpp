#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "reliability.h"
#include "small_models.h"
#include "sound_model.h"

namespace velmora::test {

namespace {

namespace fs = std::filesystem;

/// A program that opens damaged files, one after the other.
class DamagedFiles : public testing::Test {
protected:
    /// The file gives a sound model or none and says so; it is not touched, and what it gave comes back from a save.
    void expectSoundness(const std::string& name, const std::string& bytes, const std::string& damage) {
        const fs::path path = writeFileText(folder / name, bytes);
        RecordingUi ui;
        VelmoraDoc doc(ui, folder.path());
        doc.onNewDocument();
        doc.onOpenDocument(path);
        EXPECT_EQ(unsoundness(doc), "") << name << ", " << damage;
        if (doc.structureKind == StructureKind::None) {
            EXPECT_TRUE(std::any_of(ui.transcript.begin(), ui.transcript.end(),
                                    [](const std::string& line) { return line.starts_with("message: "); }))
                << name << ", " << damage << ": no model and not a word";
        } else if (doc.structureKind == StructureKind::Structured) {
            expectToComeBack(doc, ui, name + ", " + damage);
        }
        EXPECT_EQ(fileText(path), bytes) << name << ", " << damage;
    }

    void expectToComeBack(VelmoraDoc& doc, RecordingUi& ui, const std::string& what) {
        const bool emptyPatch =
            std::any_of(doc.patches.begin(), doc.patches.end(), [](const Patch& patch) { return patch.empty(); });
        const fs::path copy = folder / (doc.fileKind == FileKind::Apt ? "copy.apt" : "copy.skl");
        fs::remove(copy);
        ui.files = {{copy}};
        ui.answers = {true};
        const PatchList model = doc.patches;
        doc.saveModelAs();
        if (emptyPatch || !fs::exists(copy)) {
            return; // a patch without a section has no place in a file
        }
        RecordingUi other;
        VelmoraDoc reader(other, folder.path());
        reader.onNewDocument();
        reader.onOpenDocument(copy);
        EXPECT_EQ(reader.patches, model) << what;
    }

    /// The samples that are small enough to be opened often.
    static std::vector<fs::path> samples() {
        std::vector<fs::path> found;
        for (const char* const folder : {VELMORA_TEST_DATA, VELMORA_EXAMPLES}) {
            for (const auto& entry : fs::directory_iterator(folder)) {
                const std::string extension = entry.path().extension().string();
                const bool model = extension == ".apt" || extension == ".skl" || extension == ".dat" ||
                                   extension == ".stl" || extension == ".wrl";
                if (model && entry.file_size() < static_cast<std::uintmax_t>(times(20000, 400000))) {
                    found.push_back(entry.path());
                }
            }
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(DamagedFiles, CutAtTheEndOfARecordGiveASoundModelOrAreRefused) {
    ASSERT_GT(samples().size(), 5U);
    for (const fs::path& sample : samples()) {
        const std::string whole = fileText(sample);
        const auto records = static_cast<int>(std::count(whole.begin(), whole.end(), '\n'));
        const int step = std::max(1, records / times(12, 2000));
        int record = 0;
        for (std::size_t end = whole.find('\n'); end != std::string::npos; end = whole.find('\n', end + 1)) {
            if (record++ % step == 0) {
                expectSoundness(sample.filename().string(), whole.substr(0, end + 1),
                                "cut behind record " + std::to_string(record));
                expectSoundness(sample.filename().string(), whole.substr(0, end),
                                "cut in front of the line feed of record " + std::to_string(record));
            }
        }
    }
}

TEST_F(DamagedFiles, WithAFlippedByteGiveASoundModelOrAreRefused) {
    std::mt19937 random(5);
    for (const fs::path& sample : samples()) {
        const std::string whole = fileText(sample);
        for (int flip = 0; flip < times(25, 10000); ++flip) {
            std::string damaged = whole;
            const std::size_t at = std::uniform_int_distribution<std::size_t>(0, whole.size() - 1)(random);
            const int bit = std::uniform_int_distribution<int>(0, 7)(random);
            damaged[at] = static_cast<char>(damaged[at] ^ (1 << bit));
            expectSoundness(sample.filename().string(), damaged,
                            "bit " + std::to_string(bit) + " of byte " + std::to_string(at));
        }
    }
}

TEST_F(DamagedFiles, OfEveryKindOfDamageGiveASoundModelOrAreRefused) {
    const std::string nul(1, '\0');
    const std::string grid = "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n";
    const std::string lines = "2\n2\n0 0 0\n1 0 0\n1\n0 1 0\n";
    const std::string zones = "TITLE = \"t\"\nVARIABLES = \"x\" \"y\" \"z\"\n";
    const std::string facets = "solid s\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n"
                               "endloop\nendfacet\nendsolid s\n";
    const std::string faces = "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0, "
                              "1 0 0, 0 1 0 ] } coordIndex [ 0 1 2 -1 ] } }\n";
    const std::vector<std::pair<std::string, std::string>> whole = {
        {"a.apt", grid},
        {"a.skl", lines},
        {"a.dat", zones + "ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n1 2 3\n"},
        {"a.stl", facets},
        {"a.wrl", faces}};
    for (const auto& [name, text] : whole) {
        for (std::size_t end = 0; end <= text.size(); ++end) {
            expectSoundness(name, text.substr(0, end), "cut at byte " + std::to_string(end));
        }
        expectSoundness(name, nul + nul, "two NUL bytes");
        expectSoundness(name, text + nul + text, "a NUL byte in the middle");
        expectSoundness(name, "\xEF\xBB\xBF" + text, "a mark of UTF-8");
        expectSoundness(name, "\xFF\xFE" + text, "a mark of UTF-16");
        expectSoundness(name, std::string(100000, '7'), "one long word");
        for (const char* const number : {"nan", "inf", "-inf", "1e999", "-1e999", "1e-400", "1e300", "1e39", "0x1p3",
                                         "1,5", "1.0D+05", "1.5-104", "+-1", "99999999999999999999"}) {
            std::string changed = text;
            const std::size_t at = changed.rfind("1 0 0");
            changed.replace(at, 1, number);
            expectSoundness(name, changed, std::string("the number ") + number);
        }
        std::string carriage = text;
        std::replace(carriage.begin(), carriage.end(), '\n', '\r');
        expectSoundness(name, carriage, "carriage returns alone");
    }
    for (const char* const header : {"2147483647 2147483647", "65536 65536", "46341 46341", "4294967296 1", "-1 5",
                                     "0 5", "5 0", "5 -1", "5 5", "abc", "5 abc", "0.5 1 2", "2/-3", "2"}) {
        expectSoundness("a.apt", std::string(header) + "\n0 0 0\n1 0 0\n", std::string("the header ") + header);
    }
    for (const char* const text : {"2147483647\n", "-1\n2\n0 0 0\n1 0 0\n", "2\n-1\n0 0 0\n", "2\n2147483647\n0 0 0\n",
                                   "0\n0\n0\n0\n", "1\n0\n", "1\n1\n0 0 0\n", "1000000000 1\n"}) {
        expectSoundness("a.skl", text, std::string("the lines ") + text);
    }
    for (const char* const zone :
         {"ZONE I=2147483647, J=2147483647, K=2\n0 0 0\n", "ZONE I=99999, J=99999\n0 0 0\n", "ZONE I=-1, J=2, K=1\n",
          "ZONE N=99999999999, E=1, F=FEPOINT, ET=TRIANGLE\n0 0 0\n", "ZONE N=-5, E=1, F=FEPOINT, ET=TRIANGLE\n",
          "ZONE N=0, E=1, F=FEPOINT, ET=TRIANGLE\n1 2 3\n",
          "ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n0 1 2\n",
          "ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n-1 1 2\n",
          "ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n1 2 4\n",
          "ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n-2147483648 1 2\n",
          "ZONE N=3, E=2, F=FEPOINT, ET=TRIANGLE\n0 0 0\n1 0 0\n0 1 0\n1 2 3\n",
          "ZONE N=3, E=1, F=FEPOINT, ET=BRICK\n0 0 0\n1 0 0\n0 1 0\n1 2 3\n", "ZONE\n", "ZONE ZONE ZONE Z",
          "ZONE N=3, E=2147483647, F=FEPOINT, ET=QUADRILATERAL\n0 0 0\n",
          "ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE, PASSIVEVARLIST=[1]\n0 0\n", "ZONE T=\"unclosed\n0 0 0\n"}) {
        expectSoundness("a.dat", zones + zone, zone);
        expectSoundness("a.dat", zone, std::string("without variables ") + zone);
    }
    for (const std::uint32_t count : {0U, 1U, 2U, 0xFFFFFFFFU}) {
        std::string binary(80, 's');
        for (int byte = 0; byte < 4; ++byte) {
            binary += static_cast<char>(count >> (8 * byte) & 0xFFU);
        }
        expectSoundness("a.stl", binary + std::string(50, '\0'), "binary facets: " + std::to_string(count));
        expectSoundness("a.stl", "solid" + binary.substr(5) + std::string(49, '\0'),
                        "cut binary facets: " + std::to_string(count));
    }
    for (const char* const text :
         {"solid", "solid s\nfacet normal 0 0 1\nouter loop\nendloop\nendfacet\nendsolid\n",
          "solid s\nfacet normal nan nan nan\nouter loop\nvertex 0 0 0\nvertex 0 0 0\nvertex 0 0 0\nendloop\n"
          "endfacet\n",
          "solid s\nsolid t\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n"}) {
        expectSoundness("a.stl", text, text);
    }
    for (const char* const index : {"0 1 7 -1", "0 1 -2 -1", "0 1 -2147483648 -1", "-1 -1", "0", "0 1", "0 0 0 -1",
                                    "0 1 2 0 1 2 0 1 2 -1", "99999999999 0 1 -1"}) {
        std::string changed = faces;
        changed.replace(changed.find("0 1 2 -1"), 8, index);
        expectSoundness("a.wrl", changed, std::string("the face ") + index);
    }
    expectSoundness("a.wrl", "#VRML V2.0 utf8\n" + std::string(100000, '['), "brackets in brackets");
    expectSoundness("a.wrl", "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet", "no brace");
    expectSoundness("a.wrl", "#VRML V2.0 utf8\nI", "one letter");
    expectSoundness("a.wrl", "#VRML V2.0 utf8\nWorldInfo { title \"unclosed\\", "an unclosed string");
}

} // namespace velmora::test
