#include "dlgFilesList.h"

#include <algorithm>

#include "UserInterface.h"
#include "path_names.h"

namespace velmora {

namespace fs = std::filesystem;

namespace {

constexpr MessageText noSelection{Severity::Refused, "Text is not selected"};
constexpr MessageText emptyList{Severity::Refused, "List is empty"};
constexpr MessageText noName{Severity::Refused, "Insert name, please"};

} // namespace

bool Names::add(std::string_view name) {
    if (contains(name)) {
        return false;
    }
    list_.push_back(lowerCase(name));
    return true;
}

bool Names::contains(std::string_view name) const {
    return std::find(list_.begin(), list_.end(), lowerCase(name)) != list_.end();
}

dlgFilesList::dlgFilesList(UserInterface& ui, const fs::path& folder, VolumeList volumes)
    : ui_(&ui), place_(ui, folder, std::move(volumes)) {}

std::vector<std::string> dlgFilesList::matchingFiles() const {
    std::vector<std::string> files;
    std::error_code error;
    for (fs::directory_iterator entry(currentDirectory(), error), end; !error && entry != end; entry.increment(error)) {
        std::error_code unknown;
        if (entry->is_regular_file(unknown) && names.contains(extensionOf(entry->path()))) {
            files.push_back(entry->path().filename().string());
        }
    }
    sortByName(files);
    return files;
}

std::vector<std::string> dlgFilesList::fileLines() const {
    std::vector<std::string> lines = matchingFiles();
    const std::vector<std::string> folders = place_.folderLines();
    lines.insert(lines.end(), folders.begin(), folders.end());
    for (const std::string& drive : drives()) {
        lines.push_back(dlgFolder::driveLine(drive));
    }
    return lines;
}

void dlgFilesList::typeDirectory(const std::string& text) {
    place_.enter(trimmedText(text));
}

void dlgFilesList::typeName(const std::string& text) {
    const std::string typed = trimmedText(text);
    const std::size_t separator = typed.rfind('/');
    if (separator == std::string::npos) {
        name.text = typed;
        return;
    }
    dlgFolder folder = place_;
    if (folder.typePath(typed.substr(0, separator + 1))) {
        projectPath = folder.folder();
    }
    name.text = trimmedText(typed.substr(separator + 1));
}

void dlgFilesList::addLine(const std::optional<std::string>& line) {
    if (!line) {
        ui_->showMessage(noSelection);
    } else if (dlgFolder::isFolderLine(*line)) {
        place_.chooseLine(*line);
    } else {
        projectList.push_back(currentDirectory() / *line);
    }
}

void dlgFilesList::addAll() {
    const std::vector<std::string> files = matchingFiles();
    if (files.empty()) {
        ui_->showMessage(emptyList);
    }
    for (const std::string& file : files) {
        projectList.push_back(currentDirectory() / file);
    }
}

void dlgFilesList::removeLine(std::optional<std::size_t> index) {
    if (!index || *index >= projectList.size()) {
        ui_->showMessage(noSelection);
        return;
    }
    projectList.erase(projectList.begin() + static_cast<std::ptrdiff_t>(*index));
}

void dlgFilesList::removeAll() {
    if (projectList.empty()) {
        ui_->showMessage(emptyList);
    }
    projectList.clear();
}

bool dlgFilesList::accept() {
    if (trimmedText(name.text).empty()) {
        ui_->showMessage(noName);
        return false;
    }
    if (projectList.empty()) {
        ui_->showMessage(emptyList);
        return false;
    }
    return true;
}

} // namespace velmora
