#include "nearby_file.h"

#include <gtest/gtest.h>

#include "temporary_folder.h"

namespace velmora {
namespace {

TEST(NearbyFile, AFileInTheFolderOrBelowItHasItsPath) {
    const test::TemporaryFolder folder;
    std::filesystem::create_directory(folder / "below");
    test::writeFileText(folder / "below/a.bin", "x");
    const std::filesystem::path root = std::filesystem::canonical(folder.path());
    EXPECT_EQ(nearbyFile(folder.path(), "below/a.bin"), root / "below/a.bin");
    EXPECT_EQ(nearbyFile(folder.path(), "./below/a.bin"), root / "below/a.bin");
    EXPECT_EQ(nearbyFile(folder.path(), "none.bin"), root / "none.bin");
    EXPECT_EQ(nearbyFile(folder.path(), "a:b.bin"), std::nullopt);
    EXPECT_EQ(nearbyFile(folder.path(), "below/a:b.bin"), root / "below/a:b.bin");
}

TEST(NearbyFile, NothingLeadsOutOfTheFolder) {
    const test::TemporaryFolder folder;
    std::filesystem::create_directory(folder / "own");
    test::writeFileText(folder / "secret", "x");
    std::filesystem::create_symlink("..", folder / "own/up");
    for (const char* const name : {"", "..", "../secret", "a/../../secret", "/etc/passwd", "\\secret", "up/secret",
                                   "file:///etc/passwd", "http://example.org/a"}) {
        EXPECT_EQ(nearbyFile(folder / "own", name), std::nullopt) << name;
    }
    EXPECT_EQ(nearbyFile(folder / "own", std::string_view("a\0b", 3)), std::nullopt);
}

TEST(NearbyFile, PercentSignsWithTwoDigitsAreBytes) {
    EXPECT_EQ(percentDecoded("a%20b%2Fc"), "a b/c");
    EXPECT_EQ(percentDecoded("100%"), "100%");
    EXPECT_EQ(percentDecoded("%4"), "%4");
    EXPECT_EQ(percentDecoded("%zz%-1"), "%zz%-1");
}

} // namespace
} // namespace velmora
