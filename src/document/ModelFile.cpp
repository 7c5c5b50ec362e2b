#include "ModelFile.h"

#include <utility>

#include "UserInterface.h"
#include "path_names.h"

namespace velmora {

ModelFile::ModelFile(UserInterface& userInterface, std::filesystem::path documentsFolder)
    : ui_(&userInterface), documentsFolder_(std::move(documentsFolder)) {}

void ModelFile::setTitle(const std::string& title) {
    if (documentTitle != title) {
        documentTitle = title;
        ui_->showTitle(title);
    }
}

void ModelFile::adopt(const std::filesystem::path& path) {
    imported = false;
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

void ModelFile::nameImported(const std::string& extension) {
    nameUntitled(extension);
    imported = true;
}

void ModelFile::forget() {
    imported = false;
    memory.forgetModel();
    openedPath.clear();
}

void ModelFile::keepForUndo(const ModelFile& before) {
    kept_ = {before.chosenPath, before.openedPath, before.memory,
             before.titleWrong ? std::string() : before.documentTitle, before.imported};
}

bool ModelFile::takeBack() {
    adopt(kept_.chosenPath);
    imported = kept_.imported;
    openedPath = kept_.openedPath;
    memory = kept_.memory;
    titleWrong = false;
    if (kept_.title.empty()) {
        return false;
    }
    currentDirectory = directoryOf(chosenPath);
    setTitle(kept_.title);
    currentPath = currentDirectory + documentTitle;
    return true;
}

} // namespace velmora
