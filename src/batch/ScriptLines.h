#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "BatchUserInterface.h"
#include "Session.h"
#include "picture_file.h"
#include "print_values.h"

namespace velmora {

/// The largest size and distance from the view's corner that a script can name, in pixels.
inline constexpr int largestPixel = 1'000'000;

/// What surrounds a session whose script runs, as far as lines can touch it.
class ScriptStage {
public:
    ScriptStage() = default;
    ScriptStage(const ScriptStage&) = delete;
    ScriptStage& operator=(const ScriptStage&) = delete;
    virtual ~ScriptStage() = default;

    /// Paints the view once, if that was asked for: what a paint says and computes belongs to the line before.
    virtual void paintIfAsked() = 0;
    virtual void resizeView(int width, int height) = 0;
    /// Time goes by, in milliseconds.
    virtual void passTime(std::int64_t duration) = 0;
    /// True when the view asked to be closed since it was asked last.
    virtual bool takeCloseRequest() = 0;
    /// Draws a frame into a file of pixels, where there is something to draw with; see DrawPixels.
    virtual DrawPixels pixelDrawer() { return {}; }
    /// The script leaves the program; a failure where it cannot.
    virtual MaybeFailure leaveProgram() = 0;
};

/// Runs the lines of a script on a session and says what happens. A person of scripts answers for it.
class ScriptLines {
public:
    /// How the script goes on behind a line.
    enum class Next {
        GoOn,
        Leave, ///< the program ends as its user wanted
        Fail,  ///< the line could not be carried out
    };

    /// All references must outlive the object; while lines run, `person` is the one whom the session asks.
    ScriptLines(Session& session, BatchUserInterface& person, EventPrinter& printer, ScriptStage& stage)
        : session_(session), ui_(person), printer_(printer), stage_(stage) {}

    /// Runs one line, paints once if that was asked for, and says what happened. `number` names the line in events.
    Next run(std::int64_t number, std::string_view line);
    /// The same of the words of a line, for a program that calls and writes none.
    Next run(std::int64_t number, std::span<const std::string> words);
    /// The same of any work on the session, which may end in a failure.
    Next run(std::int64_t number, const std::function<MaybeFailure()>& work);
    /// What happened in the last line.
    const CommandReport& report() const { return report_; }
    /// The script wants to leave behind this line.
    void leave() { leaving_ = true; }

private:
    using Words = std::span<const std::string>;
    struct LineKind {
        const char* word;
        MaybeFailure (ScriptLines::*run)(Words);
        const char* usage;
    };

    static const std::array<LineKind, 15> lineKinds;
    static MaybeFailure badUsage(const char* word);

    MaybeFailure runWords(Words words);
    MaybeFailure openPath(Words words);
    MaybeFailure runCommand(Words words);
    MaybeFailure resize(Words words);
    MaybeFailure moveMouse(Words words);
    MaybeFailure pressKey(Words words);
    MaybeFailure passTime(Words words);
    MaybeFailure capture(Words words);
    MaybeFailure drag(Words words);
    MaybeFailure release(Words words);
    MaybeFailure act(const Act& act, const std::string& line);
    MaybeFailure writeJournal(Words words);
    MaybeFailure drawPicture(Words words);
    MaybeFailure print(Words words);
    MaybeFailure measure(Words words);
    MaybeFailure sayIfFound(const std::string& what, PrintedValue value);
    MaybeFailure help(Words words);
    MaybeFailure quit(Words words);
    MaybeFailure beginCommand(Words input);
    void sayValue(const std::string& what, Json value);
    void showContextMenu();

    Session& session_;
    BatchUserInterface& ui_;
    EventPrinter& printer_;
    ScriptStage& stage_;
    bool leaving_ = false;
    CommandReport report_;
};

} // namespace velmora
