// The reader beside its plain transcription, on damaged, random and large files.

#include <algorithm>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "ReadAheadScope.h"
#include "apt.h"
#include "apt_reference.h"
#include "format_test_tools.h"
#include "temporary_folder.h"

namespace velmora {
namespace {

class AptDifferentialTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;

    void compare(std::string_view text) const { compareFile(test::writeFileText(folder_ / "a.apt", text)); }

    static void compareFile(const std::filesystem::path& path) {
        PatchList patches;
        const AptReadResult result = readApt(path, patches);
        PatchList expected;
        reference::AptReader plain;
        plain.read(path, expected);
        ASSERT_TRUE(test::sameModel(patches, expected));
        std::vector<std::string> messages;
        for (const FormatFault& fault : result.faults) {
            messages.push_back(aptMessage(fault));
        }
        ASSERT_EQ(messages, plain.messages);
        ASSERT_EQ(result.firstPassEnded, plain.firstPassEnded);
        ASSERT_EQ(result.endReached, plain.lastPassEnded);
        ASSERT_EQ(result.pointsKept, pointTotal(expected));
        if (plain.messages.empty()) {
            ASSERT_EQ(result.pointsInFile, plain.total);
        }
    }
};

const std::string goodFile = "2 3\n1.5 -2 3e0\n4 5 6\n.5 5. 1e-3\n1 2 3\n+1 0 0\n7 7 7\n0 0\n1 2\n-1 -2.5e1 3\n9 8 7\n"
                             "3 1\n1 1 1\n2.25 2 2\n3 3 3\n";

TEST_F(AptDifferentialTest, AFileCutAtAnyByteGivesWhatThePlainReaderGives) {
    for (std::size_t size = 0; size <= goodFile.size(); ++size) {
        SCOPED_TRACE(size);
        compare(goodFile.substr(0, size));
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(AptDifferentialTest, AFileWithAnyByteChangedGivesWhatThePlainReaderGives) {
    for (const char wrong : {'x', ' ', '\n', '-', '.', 'e', '9', '\0'}) {
        for (std::size_t place = 0; place < goodFile.size(); ++place) {
            SCOPED_TRACE(std::string("byte ") + std::to_string(place) + " is " + wrong);
            std::string text = goodFile;
            text[place] = wrong;
            compare(text);
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST_F(AptDifferentialTest, RandomFilesGiveWhatThePlainReaderGives) {
    std::mt19937 random(42);
    const std::vector<std::string> pieces{"1 1\n",           "2 1\n",   "1 2\n",   "0 3\n",     "-1 2\n", "-1 -1\n",
                                          "1 2 3\n",         "4 5 6\n", "7 8 9\n", "0.5 1 2\n", "\n",     "x\n",
                                          "1 99999999999\n", "70 0\n",  "3",       " "};
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        for (std::size_t left = random() % 12; left > 0; --left) {
            text += pieces[random() % pieces.size()];
        }
        SCOPED_TRACE(text);
        compare(text);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(AptDifferentialTest, ThinnedFilesOfRandomShapeGiveWhatThePlainReaderGives) {
    std::mt19937 random(17);
    for (const int total : {201'000, 201'001, 2'211'001, 8'241'001, 18'291'001}) {
        std::string text;
        int points = 0;
        for (int k = 0; k < 10; ++k) {
            const int n = 60 + static_cast<int>(random() % 20);
            const int m = 60 + static_cast<int>(random() % 20);
            text += test::numberedApt(n, m, k);
            points += n * m;
        }
        const int filler = total - points;
        text += "1 " + std::to_string(filler) + '\n' + std::string(static_cast<std::size_t>(filler), '\n');
        SCOPED_TRACE(total);
        compare(text);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(AptDifferentialTest, AModelThatTurnsOutToBeLargeIsThinnedFromItsFirstPatchOn) {
    std::mt19937 random(18);
    for (const int total : {200'999, 201'001, 260'000}) {
        std::string text;
        int points = 0;
        while (points < total) { // all but the last keep their shape when they are thinned, or not
            const int n = 1 + static_cast<int>(random() % 90);
            const int m = std::min(1 + static_cast<int>(random() % 90), total - points);
            const int sections = (total - points) / m < n ? 1 : n;
            text += test::numberedApt(sections, m, points);
            points += sections * m;
        }
        SCOPED_TRACE(total);
        compare(text);
        const test::ReadAheadScope ahead("3", 1000);
        compare(text);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(AptDifferentialTest, AModelThatTurnsOutToBeLargerThanItsFileSeemedGivesWhatThePlainReaderGives) {
    std::string text;
    for (int k = 0; k < 52; ++k) {
        text += test::numberedApt(70, 70, k);
    }
    const int filler = 8'000'000; // with it every third point stays, where every second one did before
    text += "1 " + std::to_string(filler) + '\n' + std::string(static_cast<std::size_t>(filler), '\n');
    compare(text);
}

TEST_F(AptDifferentialTest, AModelThatTurnsOutToBeSmallerThanItsFileSeemedGivesWhatThePlainReaderGives) {
    std::string patch = "70 70\n";
    for (int i = 0; i < 70 * 70; ++i) {
        patch += "0 " + std::to_string(i % 10) + " 0\n";
    }
    std::string text;
    for (int k = 0; k < 42; ++k) {
        text += patch;
    }
    text.append(55'000'000, '\n'); // room for nine million points, of which every third one would stay
    compare(text);
}

TEST_F(AptDifferentialTest, RandomLinesGiveWhatThePlainReaderGivesWhenReadAhead) {
    std::mt19937 random(43);
    const std::vector<std::string> pieces{"1 1\n1 2 3\n",
                                          "2 1\n4 5 6\n7 8 9\n",
                                          "0 0\n",
                                          "3 0\n",
                                          "1 2\n1 2 3\n .5 1e1 3 \n",
                                          "0 3\n",
                                          "1 2 3\n",
                                          "-1 -1\n",
                                          "x\n",
                                          "1 2\n1 2 3 4 5 6\n\n"};
    for (int round = 0; round < 400; ++round) {
        std::string text;
        for (std::size_t left = random() % 30; left > 0; --left) {
            text += pieces[random() % (round % 2 == 0 ? 5 : pieces.size())];
        }
        SCOPED_TRACE(text);
        const test::ReadAheadScope ahead(round % 3 == 0 ? "7" : "2", 20 + random() % 100);
        compare(text);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(AptDifferentialTest, AFileOfMoreThanTheLimitGivesWhatThePlainReaderGives) {
    // Points of whole numbers, so that what stays unread is taken for headers: here for hundreds of empty patches.
    std::string one = "65 65\n";
    for (int i = 0; i < 65 * 65; ++i) {
        one += "0 0 0\n";
    }
    std::string text;
    for (int k = 0; k < 571; ++k) {
        text += one;
    }
    compare(text);
}

TEST_F(AptDifferentialTest, ALongCompartmentThinnedWhileItIsReadGivesWhatThePlainReaderGives) {
    std::string text = "501 501\n";
    for (int i = 0; i < 501 * 501; ++i) {
        text += std::to_string(i % 1000) + " 1 0\n";
    }
    compare(text);
}

TEST_F(AptDifferentialTest, RealFilesGiveWhatThePlainReaderGives) {
    const std::filesystem::path data = VELMORA_TEST_DATA;
    for (const char* const name : {"m100_wingbody.apt", "even_sphere.apt", "dome.apt"}) {
        SCOPED_TRACE(name);
        compareFile(data / name);
        PatchList patches;
        readApt(data / name, patches);
        ASSERT_TRUE(writeApt(folder_ / "again.apt", patches, 16));
        PatchList again;
        readApt(folder_ / "again.apt", again);
        EXPECT_TRUE(test::sameModel(patches, again));
    }
}

} // namespace
} // namespace velmora
