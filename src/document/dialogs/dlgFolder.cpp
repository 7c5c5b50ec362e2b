#include "dlgFolder.h"

#include <algorithm>

#include "UserInterface.h"
#include "path_names.h"

namespace velmora {

namespace fs = std::filesystem;

namespace {

bool canBeEntered(const fs::path& folder) {
    std::error_code error;
    const fs::directory_iterator entries(folder, error);
    return !error;
}

fs::path workingFolder() {
    std::error_code error;
    fs::path folder = fs::current_path(error);
    return error ? fs::path("/") : folder;
}

/// The name of a drive's line, empty for another line. No folder's name has a separator in it.
std::string driveOfLine(const std::string& line) {
    const bool drive =
        line.size() > 4 && line.starts_with("[-") && line.ends_with("-]") && line.find('/') != std::string::npos;
    return drive ? line.substr(2, line.size() - 4) : std::string();
}

} // namespace

std::string trimmedText(const std::string& text) {
    constexpr const char* blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string::npos ? std::string() : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

void sortByName(std::vector<std::string>& names) {
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        const std::string lowerA = lowerCase(a);
        const std::string lowerB = lowerCase(b);
        return lowerA != lowerB ? lowerA < lowerB : a < b;
    });
}

dlgFolder::dlgFolder(UserInterface& ui, const fs::path& folder, VolumeList volumes)
    : ui_(&ui), folder_(workingFolder()), volumes_(std::move(volumes)) {
    enter(folder);
    listDrives();
}

void dlgFolder::listDrives() {
    drives_.clear();
    for (const fs::path& volume : volumes_()) {
        drives_.push_back(volume.string());
    }
}

std::vector<std::string> dlgFolder::folderLines() const {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder_, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code unknown;
        const std::string name = entry->path().filename().string();
        if (entry->is_directory(unknown) && !name.starts_with('.')) {
            names.push_back(name);
        }
    }
    sortByName(names);
    std::vector<std::string> lines;
    if (folder_.has_relative_path()) {
        lines.emplace_back("[..]");
    }
    for (const std::string& name : names) {
        lines.push_back("[" + name + "]");
    }
    return lines;
}

bool dlgFolder::isFolderLine(const std::string& line) {
    return line.size() > 2 && line.starts_with('[') && line.ends_with(']');
}

bool dlgFolder::enter(const fs::path& folder) {
    if (folder.empty()) {
        return false;
    }
    fs::path full = (folder_ / folder).lexically_normal();
    if (!canBeEntered(full)) {
        return false;
    }
    if (!full.has_filename() && full.has_relative_path()) {
        full = full.parent_path(); // without its closing separator
    }
    folder_ = std::move(full);
    return true;
}

bool dlgFolder::chooseLine(const std::string& line) {
    const std::string drive = driveOfLine(line);
    if (!drive.empty()) {
        return changeDrive(drive);
    }
    return isFolderLine(line) && enter(line.substr(1, line.size() - 2));
}

bool dlgFolder::changeDrive(const std::string& drive) {
    if (enter(drive)) {
        return true;
    }
    ui_->showMessage({Severity::Refused, "Drive  '" + drive + "'  not available"});
    listDrives();
    return false;
}

bool dlgFolder::typePath(const std::string& text) {
    const std::string typed = trimmedText(text);
    if (typed.empty()) {
        return false;
    }
    if (enter(typed)) {
        return true;
    }
    // The box asks and has OK alone: it tells that the folder will be made.
    ui_->showMessage({Severity::Info, "Directory  '" + typed + "'  not found\nWould you like to create it?"});
    std::error_code error;
    fs::create_directories((folder_ / typed).lexically_normal(), error);
    return enter(typed);
}

} // namespace velmora
