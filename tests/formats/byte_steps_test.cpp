#include "byte_steps.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(ByteSteps, StopWhereAStepByByteStops) {
    std::mt19937 random(5);
    const std::string bytes("\x00\x01\t\n !a~\x7f\x80\xa0\xff          aaaaaaaaaa", 32);
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (std::size_t left = random() % 40; left > 0; --left) {
            text += bytes[random() % bytes.size()];
        }
        const char* const end = text.c_str() + text.size(); // a NUL
        for (const char* p = text.c_str(); p != end; ++p) {
            const char* word = p;
            while (static_cast<unsigned char>(*word) > ' ') {
                ++word;
            }
            const char* spaces = p;
            while (*spaces == ' ') {
                ++spaces;
            }
            ASSERT_EQ(skipWord(p, end), word) << text;
            ASSERT_EQ(skipSpaces(p, end), spaces) << text;
        }
    }
}

} // namespace
} // namespace velmora
