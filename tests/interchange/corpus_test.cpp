#include <cstdint>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "temp_folder.h"
#include "triangle_fuzz.h"

namespace velmora {
namespace {

// Runs the fuzz target's check on every seed, and on every seed cut at any place.
void replay(const std::string& name, void (*check)(const std::uint8_t*, std::size_t)) {
    std::size_t seeds = 0;
    for (const auto& entry : std::filesystem::directory_iterator(std::string(VELMORA_FUZZ_CORPUS) + '/' + name)) {
        const std::string text = test::readText(entry.path());
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
        const std::size_t step = text.size() / 100 + 1;
        for (std::size_t size = 0; size < text.size(); size += step) {
            check(bytes, size);
        }
        check(bytes, text.size());
        ++seeds;
    }
    EXPECT_GE(seeds, 5U);
}

TEST(Corpus, EveryStlSeedHoldsWhatTheFuzzTargetClaims) {
    replay("stl", fuzz::checkStl);
}

TEST(Corpus, EveryVrmlSeedHoldsWhatTheFuzzTargetClaims) {
    replay("vrml", fuzz::checkVrml);
}

} // namespace
} // namespace velmora
