#include "RecentFiles.h"

#include <gtest/gtest.h>

namespace velmora::test {
namespace {

class RecentFilesTest : public testing::Test {
protected:
    void SetUp() override { QSettings().clear(); }
};

TEST_F(RecentFilesTest, KeepsTheFourNewestWithTheNewestFirst) {
    RecentFiles recent;
    for (const char* path : {"/a", "/b", "/c", "/d", "/e"}) {
        recent.add(QString::fromLatin1(path));
    }
    EXPECT_EQ(recent.paths(), QStringList({"/e", "/d", "/c", "/b"}));
}

TEST_F(RecentFilesTest, AFileThatIsThereMovesToTheTop) {
    RecentFiles recent;
    for (const char* path : {"/a", "/b", "/c", "/a"}) {
        recent.add(QString::fromLatin1(path));
    }
    EXPECT_EQ(recent.paths(), QStringList({"/a", "/c", "/b"}));
}

TEST_F(RecentFilesTest, TheNextRunFindsTheList) {
    {
        RecentFiles recent;
        recent.add(QStringLiteral("/a"));
        recent.add(QStringLiteral("/b"));
    }
    EXPECT_EQ(RecentFiles().paths(), QStringList({"/b", "/a"}));
}

TEST_F(RecentFilesTest, SettingsWithHolesAndRepeatsAreRead) {
    QSettings settings;
    settings.setValue(QStringLiteral("Recent File List/File2"), QStringLiteral("/x"));
    settings.setValue(QStringLiteral("Recent File List/File3"), QStringLiteral("/x"));
    settings.setValue(QStringLiteral("Recent File List/File4"), QStringLiteral("/y"));
    EXPECT_EQ(RecentFiles().paths(), QStringList({"/x", "/y"}));
}

TEST_F(RecentFilesTest, SaysThatItChanged) {
    RecentFiles recent;
    int calls = 0;
    QObject::connect(&recent, &RecentFiles::changed, &recent, [&calls] { ++calls; });
    recent.add(QStringLiteral("/a"));
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace velmora::test
