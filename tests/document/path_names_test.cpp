#include "path_names.h"

#include <gtest/gtest.h>

#include "small_models.h"

namespace velmora::test {

TEST(PathNames, LowerCaseTouchesAsciiLettersOnly) {
    EXPECT_EQ(lowerCase("Data/WING_09.Apt"), "data/wing_09.apt");
    EXPECT_EQ(lowerCase("\xC3\x84.APT"), "\xC3\x84.apt");
    EXPECT_EQ(lowerCase(""), "");
}

TEST(PathNames, ExtensionIsLowerCaseWithoutThePoint) {
    EXPECT_EQ(extensionOf("/data/Wing.APT"), "apt");
    EXPECT_EQ(extensionOf("/data/wing.old.Skl"), "skl");
    EXPECT_EQ(extensionOf("/data.apt/wing"), "");
    EXPECT_EQ(extensionOf("/data/wing."), "");
    EXPECT_EQ(extensionOf("/data/.apt"), "");
    EXPECT_EQ(extensionOf(""), "");
}

TEST(PathNames, StemIsLowerCaseWithoutDirectoryAndExtension) {
    EXPECT_EQ(stemOf("/Data/Wing.APT"), "wing");
    EXPECT_EQ(stemOf("/data/Wing.Old.skl"), "wing.old");
    EXPECT_EQ(stemOf("Wing"), "wing");
    EXPECT_EQ(stemOf(""), "");
}

TEST(PathNames, DirectoryIsLowerCaseWithItsSeparator) {
    EXPECT_EQ(directoryOf("/Data/Models/Wing.apt"), "/data/models/");
    EXPECT_EQ(directoryOf("/Wing.apt"), "/");
    EXPECT_EQ(directoryOf("Wing.apt"), "");
}

TEST(PathNames, AFullPathKeepsItsSpelling) {
    EXPECT_EQ(fullPath("/Data/../Data/./Wing.APT"), "/Data/Wing.APT");
    EXPECT_EQ(fullPath("Wing.APT"), std::filesystem::current_path() / "Wing.APT");
}

TEST(PathNames, TheParentOfALinkedFolderIsThatOfWhereTheLinkLeads) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder / "far/Deep");
    std::filesystem::create_directory(folder / "near");
    std::filesystem::create_directory_symlink(folder / "far/Deep", folder / "near/link");
    const auto real = std::filesystem::canonical(folder.path());
    EXPECT_EQ(fullPath(folder / "near/link/../Wing.APT"), real / "far/Wing.APT");
    EXPECT_EQ(fullPath(folder / "near/link/Wing.APT"), folder / "near/link/Wing.APT");
    EXPECT_EQ(fullPath(folder / "near/link/../../near/./Wing.APT"), real / "near/Wing.APT");
    EXPECT_EQ(fullPath(folder / "far/Deep/../Wing.APT"), folder / "far/Wing.APT");
}

TEST(PathNames, OneFileHasManyNames) {
    const TemporaryFolder folder;
    writeFileText(folder / "a.apt", "");
    writeFileText(folder / "b.apt", "");
    std::filesystem::create_symlink(folder / "a.apt", folder / "link.apt");
    EXPECT_TRUE(sameFile(folder / "a.apt", folder / "link.apt"));
    EXPECT_FALSE(sameFile(folder / "a.apt", folder / "b.apt"));
    EXPECT_TRUE(sameFile("/no/such.apt", "/no/such.apt"));
    EXPECT_FALSE(sameFile("/no/such.apt", "/no/other.apt"));
}

} // namespace velmora::test
