#pragma once

#include <filesystem>
#include <string>

#include "FileMemory.h"

namespace velmora {

class UserInterface;

/// The file of the model: where it came from, where Save puts it, what the title says of it, and what is known of the
/// files that it was read from and written to.
class ModelFile {
public:
    /// `documentsFolder` is where untitled models go.
    ModelFile(UserInterface& userInterface, std::filesystem::path documentsFolder);

    /// The file that Save writes, spelled as the user chose it.
    std::filesystem::path chosenPath;
    std::string currentPath;      ///< directory and title, as shown: lower case
    std::string currentDirectory; ///< with its closing separator, lower case
    std::string fileExtension;    ///< of the file named last, lower case, without the point
    std::string documentTitle;
    std::string gridPath; ///< the grid whose boundary conditions may be named
    /// The last read failed: the title stays "Wrong" until a file command succeeds.
    bool titleWrong = false;

    /// Writes the title, unless it is that already.
    void setTitle(const std::string& title);
    /// The model is that of `path` from here on; the title waits for what comes of it.
    void adopt(const std::filesystem::path& path);
    /// The file has this extension from here on, and title and path follow.
    void takeExtension(const std::string& extension);
    /// The title of a model of zones is that of the file they would go to.
    void titleAsZones();
    /// A model that is in no file yet: "Untitled" with this extension, in the folder of the documents.
    void nameUntitled(const std::string& extension);
    /// The same for a model that came from a file of others: Save asks first where it goes.
    void nameImported(const std::string& extension);
    bool imported = false;

    /// What is known of the files that the model came from and went to.
    FileMemory memory;
    /// The file that was opened, alone, for this model; empty for none.
    std::filesystem::path openedPath;

    /// The model goes, and with it what is known of its files.
    void forget();
    /// Undo can bring back the model whose file was `before`.
    void keepForUndo(const ModelFile& before);
    /// The model comes back that keepForUndo() was told of, under its own name. False when its title was "Wrong": what
    /// could be read of it is a model like any other, and gets its title by its kind.
    bool takeBack();

private:
    struct Kept {
        std::filesystem::path chosenPath;
        std::filesystem::path openedPath;
        FileMemory memory;
        std::string title; ///< empty when it was wrong
        bool imported = false;
    };

    UserInterface* ui_;
    std::filesystem::path documentsFolder_;
    Kept kept_;
};

} // namespace velmora
