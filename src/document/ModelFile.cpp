#include "ModelFile.h"

#include <algorithm>
#include <utility>

#include "UserInterface.h"
#include "path_names.h"

namespace velmora {

ModelFile::ModelFile(UserInterface& userInterface, std::filesystem::path documentsFolder)
    : ui_(userInterface), documentsFolder_(std::move(documentsFolder)) {}

void ModelFile::setTitle(const std::string& title) {
    if (documentTitle != title) {
        documentTitle = title;
        ui_.showTitle(title);
    }
}

void ModelFile::adopt(const std::filesystem::path& path) {
    chosenPath = fullPath(path);
    currentPath = lowerCase(chosenPath.string());
    fileExtension = extensionOf(chosenPath);
}

void ModelFile::takeExtension(const std::string& extension) {
    if (extensionOf(chosenPath) != extension) {
        chosenPath.replace_extension(extension);
    }
    currentDirectory = directoryOf(chosenPath);
    setTitle(stemOf(chosenPath) + "." + extension);
    currentPath = currentDirectory + documentTitle;
}

void ModelFile::titleAsZones() {
    titleWrong = false;
    currentDirectory = directoryOf(chosenPath);
    setTitle(stemOf(chosenPath) + ".dat");
}

void ModelFile::nameUntitled(const std::string& extension) {
    titleWrong = false;
    adopt(documentsFolder_ / ("Untitled." + extension));
    currentDirectory = directoryOf(chosenPath);
    setTitle("Untitled." + extension);
    currentPath = currentDirectory + documentTitle;
}

void ModelFile::noteCompleteness(const std::filesystem::path& path, bool complete) {
    const auto same = [&path](const std::filesystem::path& other) { return sameFile(other, path); };
    incompleteFiles_.erase(std::remove_if(incompleteFiles_.begin(), incompleteFiles_.end(), same),
                           incompleteFiles_.end());
    if (!complete) {
        incompleteFiles_.push_back(path);
    }
}

bool ModelFile::holdsMore(const std::filesystem::path& path) const {
    const auto same = [&path](const std::filesystem::path& other) { return sameFile(other, path); };
    return std::any_of(incompleteFiles_.begin(), incompleteFiles_.end(), same);
}

} // namespace velmora
