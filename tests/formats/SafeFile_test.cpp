#include "SafeFile.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "FileSizeLimit.h"
#include "temporary_folder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

mode_t modeOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

bool save(const fs::path& path, std::string_view text) {
    SafeFile file(path);
    return file.isOpen() && file.write(text) && file.commit();
}

// Gives up the rights of the superuser, if the tests have them, since they make every file writable.
class OrdinaryUser {
public:
    OrdinaryUser() {
        constexpr uid_t nobody = 65534;
        if (superuser_) {
            EXPECT_EQ(::seteuid(nobody), 0);
        }
    }
    ~OrdinaryUser() {
        if (superuser_) {
            EXPECT_EQ(::seteuid(0), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    bool superuser_ = ::geteuid() == 0;
};

TEST(SafeFile, ANewFileHasWhatWasWrittenAndTheUsualPermissions) {
    const test::TemporaryFolder folder;
    const mode_t mask = ::umask(027);
    EXPECT_TRUE(save(folder / "a.apt", "text"));
    ::umask(mask);
    EXPECT_EQ(test::fileText(folder / "a.apt"), "text");
    EXPECT_EQ(modeOf(folder / "a.apt"), 0640U);
    EXPECT_THAT(folder.names(), ElementsAre("a.apt"));
}

TEST(SafeFile, UntilCommitTheOldFileStands) {
    const test::TemporaryFolder folder;
    test::writeFileText(folder / "a.apt", "old");
    SafeFile file(folder / "a.apt");
    EXPECT_TRUE(file.write("new text"));
    EXPECT_EQ(test::fileText(folder / "a.apt"), "old");
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(test::fileText(folder / "a.apt"), "new text");
}

TEST(SafeFile, WithoutCommitTheOldFileStandsAndNothingElseIsLeft) {
    const test::TemporaryFolder folder;
    test::writeFileText(folder / "a.apt", "old");
    { SafeFile(folder / "a.apt").write("new text"); }
    EXPECT_EQ(test::fileText(folder / "a.apt"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a.apt"));
}

TEST(SafeFile, TheOldPermissionsPassToTheNewFile) {
    const test::TemporaryFolder folder;
    for (const mode_t mode : {0600U, 0604U, 0755U, 0666U}) {
        test::writeFileText(folder / "a.apt", "old");
        ASSERT_EQ(::chmod((folder / "a.apt").c_str(), mode), 0);
        EXPECT_TRUE(save(folder / "a.apt", "new"));
        EXPECT_EQ(modeOf(folder / "a.apt"), mode);
        EXPECT_EQ(test::fileText(folder / "a.apt"), "new");
    }
}

TEST(SafeFile, AFullDiskLeavesTheOldFile) {
    const test::TemporaryFolder folder;
    test::writeFileText(folder / "a.apt", "old");
    bool written = true;
    bool committed = true;
    {
        const test::FileSizeLimit limit(1000);
        SafeFile file(folder / "a.apt");
        written = file.write(std::string(5000, 'x'));
        committed = file.commit();
    }
    EXPECT_FALSE(written);
    EXPECT_FALSE(committed);
    EXPECT_EQ(test::fileText(folder / "a.apt"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a.apt"));
}

TEST(SafeFile, AFailedWriteCannotBeMadeGoodByAnother) {
    const test::TemporaryFolder folder;
    SafeFile file(folder / "a.apt");
    {
        const test::FileSizeLimit limit(1000);
        EXPECT_FALSE(file.write(std::string(5000, 'x')));
    }
    EXPECT_FALSE(file.write("y"));
    EXPECT_FALSE(file.commit());
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST(SafeFile, WhatIsNoRegularFileIsRefusedAndStaysWhatItIs) {
    const test::TemporaryFolder folder;
    fs::create_symlink("/dev/null", folder / "null.apt");
    EXPECT_FALSE(save("/dev/null", "text"));
    EXPECT_FALSE(save(folder / "null.apt", "text"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_TRUE(fs::is_symlink(folder / "null.apt"));
    EXPECT_THAT(folder.names(), ElementsAre("null.apt"));
}

TEST(SafeFile, WhatIsBeingWrittenHasNoNameThatAKilledProgramCouldLeave) {
    const test::TemporaryFolder folder;
    SafeFile file(folder / "a.apt");
    EXPECT_TRUE(file.write("text"));
    EXPECT_THAT(folder.names(), ElementsAre());
    EXPECT_TRUE(file.commit());
    EXPECT_THAT(folder.names(), ElementsAre("a.apt"));
}

TEST(SafeFile, AnOldFileOfAKilledSaveIsRemovedByTheNextSaveAndAYoungOneStays) {
    const test::TemporaryFolder folder;
    const auto now = fs::file_time_type::clock::now();
    const std::vector<std::string> names{".velmora-0123456789ab.tmp", ".velmora-0123456789zz.tmp",
                                         ".velmora-0123456789aB.tmp", ".velmora-0123456789abc.tmp", "velmora.apt"};
    for (const std::string& name : names) {
        test::writeFileText(folder / name, "of a save");
        fs::last_write_time(folder / name, now - std::chrono::minutes(61));
    }
    fs::last_write_time(folder / names[1], now - std::chrono::minutes(59));
    EXPECT_TRUE(save(folder / "a.apt", "text"));
    EXPECT_THAT(folder.names(), testing::UnorderedElementsAre("a.apt", names[1], names[2], names[3], names[4]));
}

TEST(SafeFile, ExtendedAttributesPassToTheNewFile) {
    const test::TemporaryFolder folder;
    test::writeFileText(folder / "a.apt", "old");
    if (::setxattr((folder / "a.apt").c_str(), "user.origin", "wind tunnel", 11, 0) != 0) {
        GTEST_SKIP() << "the file system of the temporary folder has no extended attributes";
    }
    SafeFile file(folder / "a.apt");
    EXPECT_TRUE(file.write("new") && file.commit());
    EXPECT_THAT(file.notes(), ElementsAre());
    std::string value(20, '\0');
    EXPECT_EQ(::getxattr((folder / "a.apt").c_str(), "user.origin", value.data(), value.size()), 11);
    EXPECT_EQ(value.substr(0, 11), "wind tunnel");
    EXPECT_EQ(test::fileText(folder / "a.apt"), "new");
}

TEST(SafeFile, AHardLinkThatIsCutIsTold) {
    const test::TemporaryFolder folder;
    test::writeFileText(folder / "a.apt", "old");
    fs::create_hard_link(folder / "a.apt", folder / "b.apt");
    SafeFile file(folder / "a.apt");
    EXPECT_TRUE(file.write("new") && file.commit());
    EXPECT_THAT(file.notes(), ElementsAre("The file has 1 other name(s) by hard links: they keep what it held before"));
    EXPECT_EQ(test::fileText(folder / "b.apt"), "old");
    SafeFile again(folder / "a.apt");
    EXPECT_THAT(again.notes(), ElementsAre());
}

TEST(SafeFile, TheSizeIsThatOfWhatWasWritten) {
    const test::TemporaryFolder folder;
    SafeFile file(folder / "a.apt");
    EXPECT_EQ(file.size(), 0U);
    EXPECT_TRUE(file.write("four") && file.write("five5"));
    EXPECT_EQ(file.size(), 9U);
}

TEST(SafeFile, AFailedRenameLeavesNothingBehind) {
    const test::TemporaryFolder folder;
    SafeFile file(folder / "a.apt");
    EXPECT_TRUE(file.write("text"));
    fs::create_directory(folder / "a.apt");
    EXPECT_FALSE(file.commit());
    EXPECT_THAT(folder.names(), ElementsAre("a.apt"));
    EXPECT_TRUE(fs::is_directory(folder / "a.apt"));
}

TEST(SafeFile, ThroughALinkTheTargetIsReplacedAndTheLinkStays) {
    const test::TemporaryFolder folder;
    fs::create_directory(folder / "real");
    fs::create_directory(folder / "links");
    test::writeFileText(folder / "real/a.apt", "old");
    fs::create_symlink("../real/a.apt", folder / "links/one.apt");
    fs::create_symlink(folder / "links/one.apt", folder / "two.apt");
    EXPECT_TRUE(save(folder / "two.apt", "new"));
    EXPECT_EQ(test::fileText(folder / "real/a.apt"), "new");
    EXPECT_TRUE(fs::is_symlink(folder / "two.apt"));
    EXPECT_TRUE(fs::is_symlink(folder / "links/one.apt"));
    EXPECT_FALSE(fs::is_symlink(folder / "real/a.apt"));
    EXPECT_THAT(folder.names(), ElementsAre("links", "real", "two.apt"));
}

TEST(SafeFile, ALinkToNothingGetsItsTarget) {
    const test::TemporaryFolder folder;
    fs::create_symlink("later.apt", folder / "link.apt");
    EXPECT_TRUE(save(folder / "link.apt", "new"));
    EXPECT_TRUE(fs::is_symlink(folder / "link.apt"));
    EXPECT_EQ(test::fileText(folder / "later.apt"), "new");
}

TEST(SafeFile, LinksInACircleAreRefused) {
    const test::TemporaryFolder folder;
    fs::create_symlink("b.apt", folder / "a.apt");
    fs::create_symlink("a.apt", folder / "b.apt");
    EXPECT_FALSE(save(folder / "a.apt", "new"));
    EXPECT_THAT(folder.names(), ElementsAre("a.apt", "b.apt"));
}

TEST(SafeFile, OtherFilesOfTheFolderStayAsTheyAre) {
    const test::TemporaryFolder folder;
    const std::vector<std::string> names{".velmora-.tmp", "a.apt", "a.apt.tmp", "a.apt~", "a.tmp"};
    for (const std::string& name : names) {
        test::writeFileText(folder / name, "of " + name);
    }
    EXPECT_TRUE(save(folder / "a.apt", "new"));
    EXPECT_THAT(folder.names(), testing::ElementsAreArray(names));
    EXPECT_EQ(test::fileText(folder / "a.apt"), "new");
    for (const std::string& name : names) {
        EXPECT_TRUE(name == "a.apt" || test::fileText(folder / name) == "of " + name) << name;
    }
}

TEST(SafeFile, TwoFilesBeingSavedToOnePlaceDoNotMeet) {
    const test::TemporaryFolder folder;
    SafeFile first(folder / "a.apt");
    SafeFile second(folder / "a.apt");
    EXPECT_TRUE(first.write("first"));
    EXPECT_TRUE(second.write("second"));
    EXPECT_TRUE(second.commit());
    EXPECT_EQ(test::fileText(folder / "a.apt"), "second");
    EXPECT_TRUE(first.commit());
    EXPECT_EQ(test::fileText(folder / "a.apt"), "first");
}

TEST(SafeFile, TheLongestFileNameIsPossible) {
    const test::TemporaryFolder folder;
    const std::string name(255, 'n');
    EXPECT_TRUE(save(folder / name, "text"));
    EXPECT_EQ(test::fileText(folder / name), "text");
}

TEST(SafeFile, WhatCannotBeAFileIsRefused) {
    const test::TemporaryFolder folder;
    EXPECT_FALSE(save("", "text"));
    EXPECT_FALSE(save(folder.path(), "text"));
    EXPECT_FALSE(save(folder.path() / "", "text"));
    EXPECT_FALSE(save(folder / "missing/a.apt", "text"));
    EXPECT_FALSE(save(folder / std::string(256, 'n'), "text"));
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST(SafeFile, APipeWithoutReaderIsRefused) {
    const test::TemporaryFolder folder;
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(save(folder / "pipe", "text"));
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
}

TEST(SafeFile, AWriteProtectedFileStands) {
    const test::TemporaryFolder folder;
    ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
    test::writeFileText(folder / "a.apt", "old");
    ASSERT_EQ(::chmod((folder / "a.apt").c_str(), 0444), 0);
    bool saved = true;
    {
        const OrdinaryUser user;
        saved = save(folder / "a.apt", "new");
    }
    EXPECT_FALSE(saved);
    EXPECT_EQ(test::fileText(folder / "a.apt"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a.apt"));
}

TEST(SafeFile, AFolderThatMayNotBeWrittenIsRefused) {
    const test::TemporaryFolder folder;
    ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
    bool saved = true;
    {
        const OrdinaryUser user;
        saved = save(folder / "a.apt", "new");
    }
    ASSERT_EQ(::chmod(folder.path().c_str(), 0700), 0);
    EXPECT_FALSE(saved);
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST(SafeFile, ARelativeNameIsSavedInTheCurrentFolder) {
    const test::TemporaryFolder folder;
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    EXPECT_TRUE(save("a.apt", "text"));
    fs::current_path(before);
    EXPECT_EQ(test::fileText(folder / "a.apt"), "text");
}

} // namespace
} // namespace velmora
