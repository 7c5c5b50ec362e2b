#include "documents_folder.h"

#include <gtest/gtest.h>

#include <map>

#include "small_models.h"

namespace velmora {
namespace {

class DocumentsFolder : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(home / "Documents");
        std::filesystem::create_directories(home / "Papers");
        std::filesystem::create_directories(home / ".config");
        variables["HOME"] = home.string();
    }

    std::filesystem::path found() {
        return documentsFolder([this](const char* name) { return variables[name]; });
    }

    test::TemporaryFolder folder;
    std::filesystem::path home = folder.path() / "home";
    std::map<std::string, std::string> variables;
};

TEST_F(DocumentsFolder, IsTheOneThatTheDesktopNames) {
    test::writeFileText(home / ".config/user-dirs.dirs",
                        "# comment\nXDG_MUSIC_DIR=\"$HOME/Music\"\nXDG_DOCUMENTS_DIR=\"$HOME/Papers\"\n");
    EXPECT_EQ(found(), home / "Papers");
}

TEST_F(DocumentsFolder, TheEnvironmentComesBeforeTheSettings) {
    variables["XDG_DOCUMENTS_DIR"] = (home / "Papers").string();
    EXPECT_EQ(found(), home / "Papers");
}

TEST_F(DocumentsFolder, SettingsAreReadFromTheConfigurationFolder) {
    std::filesystem::create_directories(home / "settings");
    variables["XDG_CONFIG_HOME"] = (home / "settings").string();
    test::writeFileText(home / "settings/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"" + (home / "Papers").string() + "\"\n");
    EXPECT_EQ(found(), home / "Papers");
}

TEST_F(DocumentsFolder, IsDocumentsOfTheHomeFolderWithoutSettings) {
    EXPECT_EQ(found(), home / "Documents");
}

TEST_F(DocumentsFolder, AFolderThatIsNotThereDoesNotCount) {
    test::writeFileText(home / ".config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Nowhere\"\n");
    EXPECT_EQ(found(), home / "Documents");
}

TEST_F(DocumentsFolder, IsTheCurrentFolderWhenNothingElseIsThere) {
    variables["HOME"] = "";
    EXPECT_EQ(found(), std::filesystem::current_path());
}

TEST_F(DocumentsFolder, BrokenSettingsDoNoHarm) {
    for (const char* text : {"XDG_DOCUMENTS_DIR=", "XDG_DOCUMENTS_DIR=\"", "XDG_DOCUMENTS_DIR=\"\"", "\xff\n\n="}) {
        test::writeFileText(home / ".config/user-dirs.dirs", text);
        EXPECT_EQ(found(), home / "Documents") << text;
    }
}

} // namespace
} // namespace velmora
