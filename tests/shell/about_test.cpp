#include "about.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/sysinfo.h>

#include <string>

namespace velmora::test {
namespace {

TEST(About, NamesTheProgramAndTheMachinesStateInMegabytes) {
    EXPECT_THAT(aboutText(), testing::MatchesRegex("Velmora [0-9]+\\.[0-9]+\\.[0-9]+\n\nPhysical memory: [0-9]+ MB\n"
                                                   "Available memory: [0-9]+ MB\nFree disk space: [0-9]+ MB"));
}

TEST(About, ThePhysicalMemoryIsWhatTheSystemCallTells) {
    struct sysinfo state {};
    ASSERT_EQ(sysinfo(&state), 0);
    const unsigned long megabytes = (state.totalram * state.mem_unit) >> 20U;
    EXPECT_THAT(aboutText(), testing::HasSubstr("Physical memory: " + std::to_string(megabytes) + " MB"));
}

} // namespace
} // namespace velmora::test
