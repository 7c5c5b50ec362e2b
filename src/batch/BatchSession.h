#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "BatchSurface.h"
#include "ScriptLines.h"

namespace velmora {

/// The size of a view, in pixels.
struct ViewSize {
    int width = 800;
    int height = 600;
};

/// The program while a script runs: a session as after the start, and the lines that work on it.
class BatchSession : private ShellCommands, private ScriptStage {
public:
    /// What a session needs of its surroundings.
    struct Setup {
        std::filesystem::path documentsFolder; ///< where untitled models go
        ViewSize viewSize;
        bool echo = false;      ///< say each line before it runs
        bool overwrite = false; ///< files are written over without an answer
    };
    using Next = ScriptLines::Next;

    /// `printer` must outlive the session.
    BatchSession(EventPrinter& printer, const Setup& setup);

    /// Runs one line, see ScriptLines.
    Next run(std::int64_t number, std::string_view line);
    /// The same of the words of a line, for a program that calls and writes none.
    Next run(std::int64_t number, std::span<const std::string> words);
    /// The same of any work on the session, which may end in a failure.
    Next run(std::int64_t number, const std::function<MaybeFailure(Session&)>& work);
    /// Who answers the questions that a line does not, and hears of progress.
    void listenTo(Listener listener) { ui_.listenTo(std::move(listener)); }
    const Session& session() const { return session_; }
    /// What happened in the last line.
    const CommandReport& report() const { return lines_.report(); }

private:
    void exit() override;
    void showGuide() override;
    void showKeys() override;
    void showAbout() override;
    void savePicture() override;
    void copyPicture() override;
    void showPanel(Panel panel) override;

    void paintIfAsked() override;
    void resizeView(int width, int height) override;
    void passTime(std::int64_t duration) override;
    bool takeCloseRequest() override { return surface_.takeCloseRequest(); }
    DrawPixels pixelDrawer() override;
    MaybeFailure leaveProgram() override;
    void paint();

    EventPrinter& printer_;
    BatchUserInterface ui_;
    BatchSurface surface_;
    Session session_;
    ScriptLines lines_;
    bool echo_;
};

} // namespace velmora
