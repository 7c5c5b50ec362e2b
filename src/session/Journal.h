#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Act.h"
#include "Command.h"
#include "CommandReport.h"

namespace velmora {

/// What was done since the start, as the lines of a script that does it again: what changed nothing is not in it, nor
/// where the model was looked at from, but for a principal view before what depends on it.
class Journal {
public:
    /// What a piece of work came to.
    enum class Effect {
        None,
        Beside, ///< only what the next dialogs and the picture know changed
        Undo,   ///< and the snapshots for Undo
        Kept,   ///< the model, a capture, a buffer, the zBlock, a name or a file changed
    };

    /// A command ran; `plane` is the plane of the view that it ran in, see DocumentView::principalPlane.
    void addCommand(const Command& command, const CommandReport& report, Effect effect, int plane);
    /// Files were opened by path; `hadModel`: in place of a model.
    void addOpening(const std::vector<std::filesystem::path>& paths, bool hadModel, const CommandReport& report,
                    Effect effect);
    /// The model was saved on the way to something else.
    void addSave(const CommandReport& report);
    void addAct(const Act& act);
    /// What no line can do again.
    void addRemark(const std::string& text) { lines_.push_back("# " + text); }

    const std::vector<std::string>& lines() const { return lines_; }

private:
    bool isLeftOut(const CommandReport& report, Effect effect) const;
    std::string answersOf(const CommandReport& report);
    std::string settingsOf(const CommandReport::Dialog& dialog);
    void keepSettings(const CommandReport& report);
    void needView(int plane);
    void putWithheldIn();

    std::vector<std::string> lines_;
    /// A line that failed and left nothing but a snapshot for Undo: it takes its place when Undo goes back to it.
    struct Withheld {
        std::size_t place;
        std::string line;
    };
    std::vector<Withheld> withheld_;
    /// What was set in dialogs by lines that are left out: it stands in them when they are shown again.
    std::map<std::string, std::vector<CommandReport::Setting>> unwritten_;
    int bentPlane_ = -1; ///< of the drag that bends a curve, as of the last line; -1 for none
};

} // namespace velmora
