#include "FileBytes.h"

#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "temporary_folder.h"

namespace velmora {
namespace {

class FileBytesTest : public testing::Test {
protected:
    test::TemporaryFolder folder_;
};

TEST_F(FileBytesTest, TheWholeFileIsHeldWithANulBehind) {
    const std::string content("a\0b\n", 4);
    const FileBytes file(test::writeFileText(folder_ / "a", content));
    ASSERT_TRUE(file.isOpen());
    EXPECT_FALSE(file.tooLarge());
    EXPECT_EQ(file.text(), content);
    EXPECT_EQ(file.text().data()[4], '\0');
}

TEST_F(FileBytesTest, AnEmptyFileIsOpenAndEmpty) {
    const FileBytes file(test::writeFileText(folder_ / "a", ""));
    EXPECT_TRUE(file.isOpen());
    EXPECT_EQ(file.text().size(), 0U);
}

TEST_F(FileBytesTest, OnlyRegularFilesAreTaken) {
    ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(FileBytes(folder_ / "none").isOpen());
    EXPECT_FALSE(FileBytes(folder_.path()).isOpen());
    EXPECT_FALSE(FileBytes(folder_ / "pipe").isOpen());
    EXPECT_FALSE(FileBytes("/dev/zero").isOpen());
}

TEST_F(FileBytesTest, AFileLargerThanTheMemoryIsNotLoaded) {
    const std::filesystem::path path = test::writeFileText(folder_ / "sparse", "x");
    if (::truncate(path.c_str(), off_t{1} << 43) != 0) {
        GTEST_SKIP() << "the file system takes no such file";
    }
    const FileBytes file(path);
    EXPECT_TRUE(file.isOpen());
    EXPECT_TRUE(file.tooLarge());
    EXPECT_EQ(file.text().size(), 0U);
}

TEST_F(FileBytesTest, ProgressRises) {
    const std::filesystem::path path = test::writeFileText(folder_ / "large", std::string(40'000'000, 'x'));
    std::vector<double> told;
    const FileBytes file(path, [&told](double fraction) { told.push_back(fraction); });
    ASSERT_EQ(told.size(), 3U); // blocks of 2^24 bytes
    EXPECT_LT(told[0], told[1]);
    EXPECT_LE(told[2], 1.0);
}

} // namespace
} // namespace velmora
