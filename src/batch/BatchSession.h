#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "BatchSurface.h"
#include "BatchUserInterface.h"
#include "Session.h"
#include "print_values.h"

namespace velmora {

/// The size of a view, in pixels.
struct ViewSize {
    int width = 800;
    int height = 600;
};

/// The largest size and distance from the view's corner that a script can name, in pixels.
inline constexpr int largestPixel = 1'000'000;

/// The program while a script runs: a session as after the start, and the lines that work on it.
class BatchSession : private ShellCommands {
public:
    /// What a session needs of its surroundings.
    struct Setup {
        std::filesystem::path documentsFolder; ///< where untitled models go
        ViewSize viewSize;
        bool echo = false; ///< say each line before it runs
    };
    /// How the script goes on behind a line.
    enum class Next {
        GoOn,
        Leave, ///< the program ends as its user wanted
        Fail,  ///< the line could not be carried out
    };

    /// `printer` must outlive the session.
    BatchSession(EventPrinter& printer, const Setup& setup);

    /// Runs one line, paints once if that was asked for, and says what happened. `number` names the line in events.
    Next run(std::int64_t number, std::string_view line);
    /// The same of the words of a line, for a program that calls and writes none.
    Next run(std::int64_t number, std::span<const std::string> words);
    /// The same of any work on the session, which may end in a failure.
    Next run(std::int64_t number, const std::function<MaybeFailure(Session&)>& work);
    /// Who answers the questions that a line does not, and hears of progress.
    void listenTo(Listener listener) { ui_.listenTo(std::move(listener)); }
    const Session& session() const { return session_; }
    /// What happened in the last line.
    const CommandReport& report() const { return report_; }

private:
    using Words = std::span<const std::string>;
    struct LineKind {
        const char* word;
        MaybeFailure (BatchSession::*run)(Words);
        const char* usage;
    };

    static const std::array<LineKind, 10> lineKinds;
    static MaybeFailure badUsage(const char* word);

    Next carryOut(std::int64_t number, const std::function<MaybeFailure()>& work);
    MaybeFailure runWords(Words words);
    MaybeFailure openPath(Words words);
    MaybeFailure runCommand(Words words);
    MaybeFailure resize(Words words);
    MaybeFailure moveMouse(Words words);
    MaybeFailure pressKey(Words words);
    MaybeFailure passTime(Words words);
    MaybeFailure print(Words words);
    MaybeFailure measure(Words words);
    MaybeFailure sayIfFound(const std::string& what, PrintedValue value);
    MaybeFailure help(Words words);
    MaybeFailure quit(Words words);

    MaybeFailure beginCommand(Words input);
    void sayValue(const std::string& what, Json value);
    void showContextMenu();
    void exit() override;
    void showGuide() override;
    void showKeys() override;
    void showAbout() override;
    void toggleFileReport() override;
    void paint();
    void paintIfAsked();

    EventPrinter& printer_;
    BatchUserInterface ui_;
    BatchSurface surface_;
    Session session_;
    bool echo_;
    bool leaving_ = false;
    CommandReport report_;
};

} // namespace velmora
