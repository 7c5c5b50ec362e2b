#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dlgFolder.h"

namespace velmora {

/// A list of names in which none stands twice, letters of either case being equal.
class Names {
public:
    /// Puts a name, in lower case, behind the others; false when it is there already.
    bool add(std::string_view name);
    bool contains(std::string_view name) const;
    const std::vector<std::string>& list() const { return list_; }

private:
    std::vector<std::string> list_;
};

/// One text, shown in an edit field.
struct Name {
    std::string text;
};

/// The editor of the project list: a project's name, and the files that belong to it, chosen from the folders of the
/// machine. Its window shows and calls it; every refusal is told through `ui` and leaves all as it was.
class dlgFilesList {
public:
    static constexpr const char* statusText = "Create or edit documents list";

    Name name{"untitled"};                          ///< of the project
    Names names;                                    ///< the extensions of the files that can be chosen, without point
    std::vector<std::filesystem::path> projectList; ///< the chosen files, in order
    std::filesystem::path projectPath;              ///< the folder of the project; empty: not chosen yet

    /// Stands in `folder`, see dlgFolder. `ui` must outlive the object.
    dlgFilesList(UserInterface& ui, const std::filesystem::path& folder, VolumeList volumes = mountedVolumes);

    const std::filesystem::path& currentDirectory() const { return place_.folder(); }
    const std::vector<std::string>& drives() const { return place_.drives(); }
    /// The left list: the files of the current directory that have an allowed extension, then its folders, then the
    /// drives.
    std::vector<std::string> fileLines() const;

    /// Goes to a drive, see dlgFolder.
    bool changeDrive(const std::string& drive) { return place_.changeDrive(drive); }
    /// What was typed becomes the current directory; one that cannot be entered leaves it as it was.
    void typeDirectory(const std::string& text);
    /// Tidies what was typed as the project's name: blanks at its ends go, and a folder in front of it becomes that of
    /// the project, made if it is not there.
    void typeName(const std::string& text);
    /// ">" on a line of the left list: a file goes to the project list, a folder or drive is entered.
    void addLine(const std::optional<std::string>& line);
    /// " >>": all files of the left list go to the project list.
    void addAll();
    /// "<" on a line of the project list, from 0: it is taken out.
    void removeLine(std::optional<std::size_t> index);
    /// "<<": the project list is emptied.
    void removeAll();
    /// A folder chooser that stands in the current directory; what it gives is to become `projectPath`.
    dlgFolder browse() const { return place_; }
    /// OK: true when the name and the list are there.
    bool accept();

private:
    std::vector<std::string> matchingFiles() const;

    UserInterface* ui_;
    dlgFolder place_;
};

} // namespace velmora
