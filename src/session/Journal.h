#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Act.h"
#include "Command.h"
#include "CommandReport.h"

namespace velmora {

struct CaptureState;
struct DialogForm;
struct DialogValues;

/// By dialog and field the values that are kept, as scripts give them.
using DialogTexts = std::map<std::string, std::map<std::string, std::string>>;
DialogTexts textsOf(DialogValues& dialogs);

/// What a click beside the geometry leaves though nothing is captured by it, or one that is not at its end: what comes
/// next can meet it. Numbers from 0, -1 for none.
struct CaptureTraces {
    std::int32_t patch = -1;
    std::int32_t section = -1;
    std::int32_t point = -1;
    bool picked = false;              ///< the last pick of a point found one
    std::int32_t pressedSection = -1; ///< on which the button is down while one is waited for
    std::int32_t pressedLine = -1;

    friend bool operator==(const CaptureTraces&, const CaptureTraces&) = default;
};
CaptureTraces tracesOf(const CaptureState& capture);

/// What was done since the start, as the lines of a script that does it again: what changed nothing is not in it, nor
/// where the model was looked at from, but for a principal view before what depends on it.
class Journal {
public:
    /// What a piece of work came to.
    enum class Effect {
        None,
        Beside, ///< only what the next dialogs know changed
        Undo,   ///< and the snapshots for Undo
        Kept,   ///< the model, a capture, a buffer, the zBlock, a name, a switch or a file changed
    };

    /// What a line is done in: a replay may stand otherwise in what no line can tell.
    struct Surroundings {
        DialogTexts dialogs; ///< the values that the dialogs keep
        CaptureTraces traces;
        int plane = 0; ///< of the view, see DocumentView::principalPlane
    };
    /// What a replay of the lines would stand at, where that is something else than the document. It belongs to the
    /// last line.
    struct Tracking {
        /// What dialogs keep of lines that are left out is not kept in a replay: the values that stand there.
        DialogTexts otherDialogs;
        CaptureTraces traces; ///< the numbers of what is captured, as of the last line
        int bentPlane = -1;   ///< of the drag that bends a curve, as of the last line; -1 for none
    };

    /// A command ran, and the surroundings were those.
    void addCommand(const Command& command, const CommandReport& report, Effect effect, const Surroundings& before,
                    const Surroundings& after);
    /// Files were opened by path; `hadModel`: in place of a model.
    void addOpening(const std::vector<std::filesystem::path>& paths, bool hadModel, const CommandReport& report,
                    Effect effect, const Surroundings& after);
    /// The model was saved on the way to something else.
    void addSave(const CommandReport& report);
    /// The mouse, or a line of a script in its place, did this; `traces` are there now.
    void addAct(const Act& act, const CaptureTraces& traces);
    /// What no line can do again.
    void addRemark(const std::string& text) { append("# " + text); }

    /// The values at which fields of a dialog would stand in a replay, where they are others than those shown: `kept`
    /// were the values of all dialogs before the command that shows it.
    std::map<std::string, std::string> otherStart(const DialogForm& shown, const DialogTexts& kept,
                                                  const CaptureState& capture) const;

    /// What was done, up to the line that was gone to.
    const std::vector<std::string>& lines() const { return lines_; }
    /// The same as a script that leaves what the last click left, too: `now` is there.
    std::vector<std::string> script(const CaptureTraces& now) const;
    /// The lines behind it, until something new is done.
    const std::vector<std::string>& later() const { return later_; }
    const Tracking& tracking() const { return tracking_; }
    /// The lines from number `line` on, from 0, are later ones; `tracking` belongs to what stays.
    void goTo(std::size_t line, const Tracking& tracking);
    /// The first line, from 0, that is new since the last call; none when all stand as they stood.
    std::optional<std::size_t> takeFirstNew();

private:
    bool isLeftOut(const CommandReport& report, Effect effect) const;
    std::string answersOf(const CommandReport& report) const;
    void noteLeftOut(const CommandReport& report, const Surroundings& before, const Surroundings& after);
    void noteDone(const CommandReport& report, const Surroundings& before, const Surroundings& after);
    void needView(int plane);
    void needTraces(const CaptureTraces& traces);
    std::vector<std::string> linesTo(const CaptureTraces& traces) const;
    void append(std::string line);

    std::vector<std::string> lines_;
    std::vector<std::string> later_;
    Tracking tracking_;
    std::optional<std::size_t> firstNew_;
};

} // namespace velmora
