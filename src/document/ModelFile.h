#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

class UserInterface;

/// The file of the model: where it came from, where Save puts it, what the title says of it, and which files hold more
/// than was read of them.
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

    /// A file was read or written; `complete` when it holds no more than the model took from it.
    void noteCompleteness(const std::filesystem::path& path, bool complete);
    /// Less was read of this file than it holds. That is kept when the model is removed, as Undo can bring it back.
    bool holdsMore(const std::filesystem::path& path) const;

private:
    UserInterface& ui_;
    std::filesystem::path documentsFolder_;
    std::vector<std::filesystem::path> incompleteFiles_;
};

} // namespace velmora
