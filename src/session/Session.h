#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "CommandReport.h"
#include "Recorder.h"
#include "ShellCommands.h"
#include "VelmoraDoc.h"
#include "VelmoraView.h"
#include "command_table.h"

namespace velmora {

/// The one road into the document: a front end runs commands, opens files and leaves through it, and learns what
/// happened. It owns the document and the view; the front end brings a person, a surface to draw on, and the commands
/// of its shell.
class Session {
public:
    /// All references must outlive the session. `documentsFolder` is where untitled models go.
    Session(UserInterface& person, ViewSurface& surface, ShellCommands& shell, std::filesystem::path documentsFolder);

    VelmoraDoc& document() { return document_; }
    const VelmoraDoc& document() const { return document_; }
    VelmoraView& view() { return view_; }
    const VelmoraView& view() const { return view_; }

    /// The state in which the program begins: a new document.
    void start() { document_.onNewDocument(); }

    /// True when the states of document and view leave the command on.
    bool isOn(const Command& command) const;
    /// Runs the command by its owner, if it is on; else the report says so.
    CommandReport run(const Command& command);
    /// Opens files by path, with no question about the model that is there: those behind the first join it if they are
    /// of its type.
    CommandReport open(const std::vector<std::filesystem::path>& paths);
    /// The same once the model that is there was saved, or was not to be.
    CommandReport openInstead(const std::vector<std::filesystem::path>& paths);
    /// The question before the program ends; false when it stays, as the model could not be saved.
    bool leave();
    /// Any other work: what happens in it, commands and questions of this session among it, comes into the report.
    CommandReport perform(const std::function<void()>& work);

private:
    void carryOut(const Command& command);

    Recorder recorder_;
    ShellCommands& shell_;
    VelmoraDoc document_;
    VelmoraView view_;
};

/// True when the states of document and view leave the command on.
bool isCommandOn(const Command& command, const VelmoraDoc& document, const VelmoraView& view);

} // namespace velmora
