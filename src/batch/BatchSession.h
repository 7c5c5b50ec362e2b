#pragma once

#include <array>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "BatchSurface.h"
#include "BatchUserInterface.h"
#include "VelmoraDoc.h"
#include "VelmoraView.h"
#include "command_table.h"

namespace velmora {

/// The size of a view, in pixels.
struct ViewSize {
    int width = 800;
    int height = 600;
};

/// The largest size and distance from the view's corner that a script can name, in pixels.
inline constexpr int largestPixel = 1'000'000;

/// The program while a script runs: a document with its view, as after the start, and the lines that work on it.
class BatchSession {
public:
    /// What a session needs of its surroundings.
    struct Setup {
        std::filesystem::path documentsFolder; ///< where untitled models go
        ViewSize viewSize;
        bool echo = false; ///< say each line before it runs
    };
    /// How the script goes on behind a line.
    enum class Outcome {
        GoOn,
        Leave, ///< the program ends as its user wanted
        Fail,  ///< the script ends: the line could not be carried out
    };

    /// `printer` must outlive the session.
    BatchSession(EventPrinter& printer, const Setup& setup);

    /// Runs one line, paints once if that was asked for, and says what happened. `number` names the line in events.
    Outcome run(std::int64_t number, std::string_view line);

private:
    using Words = std::span<const std::string>;
    struct LineKind {
        const char* word;
        MaybeFailure (BatchSession::*run)(Words);
        const char* usage;
    };

    static const std::array<LineKind, 8> lineKinds;
    static MaybeFailure badUsage(const char* word);

    MaybeFailure runWords(const ScriptLine& line);
    MaybeFailure openPath(Words words);
    MaybeFailure runCommand(Words words);
    MaybeFailure resize(Words words);
    MaybeFailure moveMouse(Words words);
    MaybeFailure pressKey(Words words);
    MaybeFailure passTime(Words words);
    MaybeFailure print(Words words);
    MaybeFailure quit(Words words);

    MaybeFailure beginCommand(Words input);
    void carryOut(const Command& command);
    void runShellCommand(const Command& command);
    void showContextMenu();
    MaybeFailure leave();
    void paint();
    void paintIfAsked();

    EventPrinter& printer_;
    BatchUserInterface ui_;
    BatchSurface surface_;
    VelmoraDoc doc_;
    VelmoraView view_;
    bool echo_;
    bool leaving_ = false;
    std::int64_t lineNumber_ = 0;
};

} // namespace velmora
