#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "CommandReport.h"
#include "History.h"
#include "Journal.h"
#include "ModelFiles.h"
#include "Recorder.h"
#include "ShellCommands.h"
#include "StateMark.h"
#include "VelmoraView.h"
#include "command_table.h"

namespace velmora {

class UserInterface;
class VelmoraDoc;
struct DocumentState;

/// The one road into the document: a front end runs commands, opens files and leaves through it, and learns what
/// happened. It owns the document and the view; the front end brings a person, a surface to draw on, and the commands
/// of its shell.
class Session {
public:
    /// All references must outlive the session. `documentsFolder` is where untitled models go.
    Session(UserInterface& person, ViewSurface& surface, ShellCommands& shell,
            const std::filesystem::path& documentsFolder);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    VelmoraDoc& document() { return *document_; }
    const VelmoraDoc& document() const { return *document_; }
    DocumentState& state();
    const DocumentState& state() const;
    UserInterface& ui();
    VelmoraView& view() { return view_; }
    const VelmoraView& view() const { return view_; }

    /// The state in which the program begins: a new document.
    void start();

    /// True when the states of document and view leave the command on.
    bool isOn(const Command& command) const;
    /// Runs the command by its owner, if it is on; else the report says so.
    CommandReport run(const Command& command);
    /// Opens files by path, with no question about the model that is there: those behind the first join it if they are
    /// of its type.
    CommandReport open(const std::vector<std::filesystem::path>& paths);
    /// The same once the model that is there was saved, or was not to be.
    CommandReport openInstead(const std::vector<std::filesystem::path>& paths);
    /// A file of others in place of the model, once that was saved, or was not to be.
    CommandReport importInstead(const std::filesystem::path& path);
    /// The chooser of Open, opened on `folder`.
    CommandReport openIn(const std::filesystem::path& folder);
    /// What a click or a drag does, by number.
    VelmoraView::ActResult act(const Act& act);
    /// The question before the program ends; false when it stays, as the model could not be saved.
    bool leave();
    /// What came of the files that were read by the last piece of work that read any.
    const std::vector<FileRead>& filesRead() const { return filesRead_; }
    /// Whether a model stands in the file at `path`: it was read or written here, or is another name of such a file.
    bool holdsModel(const std::filesystem::path& path) const { return modelFiles_.contains(path); }
    /// What was done since the start, as a script.
    Journal& journal() { return journal_; }
    const Journal& journal() const { return journal_; }
    /// The journal as a script that leaves the session as it is now.
    std::vector<std::string> script() const;
    /// Notes in the journal what no line of a script can do.
    void remark(const std::string& text) { journal_.addRemark(text); }
    /// From here on a snapshot is kept behind each line of the journal, for goTo().
    void keepHistory();
    /// Keeps the snapshot that is due: what the mouse did, with no command behind it, has none yet.
    void keepUp();
    /// There is a way back, or forth, to the document as it was behind the first `line` lines of the journal.
    bool leadsTo(std::size_t line) const;
    /// The line, or the end of the drag or other work that it is a part of; none when that is not kept any more.
    std::optional<std::size_t> endOfWork(std::size_t line) const;
    /// Goes there; the lines behind can be gone to until something new is done. False when there is no way.
    bool goTo(std::size_t line);
    /// What the snapshots hold.
    std::uint64_t historyBytes() const { return history_ ? history_->heldBytes() : 0; }
    /// The same work with another person before the program, who answers for it.
    CommandReport performAs(UserInterface& person, const std::function<void()>& work);
    /// Any other work: what happens in it, commands and questions of this session among it, comes into the report.
    CommandReport perform(const std::function<void()>& work);

private:
    void carryOut(const Command& command);
    std::optional<std::filesystem::path> modelOfShownDistances() const;
    void tellOfLostDistances();
    void noteWritten(const CommandReport& report);
    Journal::Effect effectSince(const StateMark& before, const CommandReport& report);
    Journal::Surroundings surroundings();
    CommandReport noted(const Command& command, const std::function<void()>& work);
    CommandReport openAndNote(const std::vector<std::filesystem::path>& paths);
    CommandReport instead(const std::function<void()>& work);

    Recorder recorder_;
    ShellCommands& shell_;
    std::unique_ptr<VelmoraDoc> document_;
    VelmoraView view_;
    StateMarker marker_;
    Journal journal_;
    DialogTexts dialogsBefore_; ///< the command that runs
    std::optional<History> history_;
    std::optional<std::filesystem::path> distancesShown_; ///< as of the last command or drag: of which model
    std::vector<FileRead> filesRead_;
    ModelFiles modelFiles_;
};

/// True when the states of document and view leave the command on.
bool isCommandOn(const Command& command, const DocumentState& document, const VelmoraView& view);

} // namespace velmora
