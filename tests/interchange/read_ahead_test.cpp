// Files that all threads read together give what one pass gives: every bit, every count, every message with its line.

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ReadAheadScope.h"
#include "apt.h"
#include "format_test_tools.h"
#include "interchange.h"
#include "triangle_tools.h"

namespace velmora {
namespace {

std::string textOf(const FileRead& record) {
    std::string text = record.format + ' ' + std::to_string(record.bytes) + (record.complete ? " complete" : "") +
                       (record.lossless ? " lossless" : "") + (record.thinned ? " thinned" : "") + '\n';
    for (const Counts* const counts : {&record.found, &record.kept}) {
        for (const auto& [kind, count] : *counts) {
            text += kind + ' ' + std::to_string(count) + '\n';
        }
    }
    for (const auto* const lines : {&record.changed, &record.reasons}) {
        for (const std::string& line : *lines) {
            text += line + '\n';
        }
    }
    return text;
}

std::string textOf(const ZoneVariables& variables) {
    std::string text;
    for (const auto& variable : variables) {
        text += variable->name + ':';
        for (const double value : variable->data) {
            text += std::to_string(test::bitsOf(value)) + ' ';
        }
    }
    return text;
}

std::string textOf(const PatchList& patches) {
    std::string text;
    for (const Patch& patch : patches) {
        text += "patch\n";
        for (const PointList& section : patch) {
            for (const zVec<double>& p : section) {
                text += std::to_string(test::bitsOf(p.x)) + ' ' + std::to_string(test::bitsOf(p.y)) + ' ' +
                        std::to_string(test::bitsOf(p.z)) + ' ';
            }
            text += '\n';
        }
    }
    return text;
}

/// All that reading a file gives, as text.
std::string readText(const std::filesystem::path& path) {
    if (path.extension() == ".apt") {
        PatchList patches;
        const AptReadResult result = readApt(path, patches);
        std::string text = textOf(patches) + textOf(result.record) + std::to_string(result.pointsInFile) + ' ' +
                           std::to_string(result.pointsKept) + (result.endReached ? " end" : "") +
                           (result.textBehind ? " behind" : "");
        for (const FormatFault& fault : result.faults) {
            text += '\n' + aptMessage(fault);
        }
        return text;
    }
    const test::CapturedErrors errors;
    zRegion structured;
    zRegion_fe unstructured;
    FileRead record;
    std::string text;
    const bool read = readGeometry(
        path, false, structured, unstructured, [&text](const std::string& message) { text += message + '\n'; }, {},
        &record);
    text += (read ? "read " : "not read ") + errors.text() + textOf(record);
    for (const auto& zone : structured.blocks) {
        text += zone->title + std::to_string(zone->imax) + ' ' + std::to_string(zone->jmax) + textOf(zone->variables);
    }
    for (const auto& zone : unstructured.blocks) {
        text += zone->title + textOf(zone->variables);
        for (const std::int32_t node : zone->connectivity) {
            text += std::to_string(node) + ' ';
        }
    }
    return text;
}

class ReadAheadTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;
    std::mt19937 random_{91};

    void compare(const std::filesystem::path& path, std::size_t block) {
        const std::string alone = readText(path);
        constexpr std::array<const char*, 3> threads = {"2", "7", "64"};
        const test::ReadAheadScope ahead(threads[random_() % 3], block);
        // The texts are long: they are not printed.
        EXPECT_TRUE(readText(path) == alone) << path << ", blocks of " << block;
    }

    static std::vector<std::filesystem::path> samples(std::uintmax_t largest) {
        std::vector<std::filesystem::path> found;
        for (const char* const folder : {VELMORA_TEST_DATA, VELMORA_EXAMPLES}) {
            for (const auto& entry : std::filesystem::directory_iterator(folder)) {
                const std::string kind = entry.path().extension().string();
                const bool isText = kind == ".apt" || kind == ".stl" || kind == ".dat" || kind == ".wrl";
                if (isText && entry.file_size() > 0 && entry.file_size() <= largest) {
                    found.push_back(entry.path());
                }
            }
        }
        std::sort(found.begin(), found.end());
        EXPECT_GT(found.size(), 5U);
        return found;
    }
};

TEST_F(ReadAheadTest, AllSamplesAreReadAsInOnePass) {
    for (const std::filesystem::path& sample : samples(500'000)) {
        const std::size_t size = std::filesystem::file_size(sample);
        compare(sample, std::max<std::size_t>(size / 61, 50));
        compare(sample, size / 2 + 1);
    }
}

TEST_F(ReadAheadTest, CutAndDamagedSamplesAreReadAsInOnePass) {
    for (const std::filesystem::path& sample : samples(30'000)) {
        const std::string text = test::fileText(sample);
        const std::filesystem::path damaged = folder_ / ("damaged" + sample.extension().string());
        for (int round = 0; round < 40 && !HasFailure(); ++round) {
            std::string wrong = text.substr(0, round % 2 == 0 ? text.size() : random_() % text.size());
            for (std::size_t flips = random_() % 4; flips > 0 && !wrong.empty(); --flips) {
                wrong[random_() % wrong.size()] = " \n-.e9x\0"[random_() % 8];
            }
            test::writeFileText(damaged, wrong);
            compare(damaged, 20 + random_() % 3000);
        }
    }
}

} // namespace
} // namespace velmora
