#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "volumes.h"

namespace velmora {

class UserInterface;

/// The folder chooser: where it stands, the folders there, the drives, and the rules of moving about. Its window shows
/// and calls it. Lines of lists are as shown: a folder is "[name]", the one above "[..]", a drive "[-path-]".
class dlgFolder {
public:
    static constexpr const char* title = "Choose Folder";

    /// Stands in `folder`, or where that cannot be entered in the folder that the program runs in. `ui` must outlive
    /// the object.
    explicit dlgFolder(UserInterface& ui, const std::filesystem::path& folder, VolumeList volumes = mountedVolumes);

    const std::filesystem::path& folder() const { return folder_; }
    /// The folders in it, the one above first, then by name. Hidden ones are left out.
    std::vector<std::string> folderLines() const;
    /// The drives that exist, as their paths.
    const std::vector<std::string>& drives() const { return drives_; }

    /// Goes to the folder or drive of a line. False when it cannot be entered; of a drive that is told.
    bool chooseLine(const std::string& line);
    /// Goes to a drive. When that cannot be entered it is told, the drives that exist are listed anew, and it is false.
    bool changeDrive(const std::string& drive);
    /// Goes to a folder that was typed, from here if it is no full path. One that cannot be entered is told, then made
    /// and entered all the same; false when even that fails, and when nothing but blanks was typed.
    bool typePath(const std::string& text);
    /// Goes to a folder if it can be entered, and says nothing; false when not.
    bool enter(const std::filesystem::path& folder);

    /// The line of a drive in a list.
    static std::string driveLine(const std::string& drive) { return "[-" + drive + "-]"; }
    /// Whether a line is one of a folder or drive.
    static bool isFolderLine(const std::string& line);

private:
    void listDrives();

    UserInterface* ui_;
    std::filesystem::path folder_;
    VolumeList volumes_;
    std::vector<std::string> drives_;
};

/// The text without blanks at its ends.
std::string trimmedText(const std::string& text);

/// By letters of either case, then as they are.
void sortByName(std::vector<std::string>& names);

} // namespace velmora
