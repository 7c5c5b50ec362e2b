#include "WindowScript.h"

#include <fstream>

#include "CommandGuard.h"
#include "PixelPicture.h"
#include "ScriptLines.h"
#include "script_file.h"

namespace velmora {

namespace {

/// Keeps the last error.
class ErrorKeeper : public EventPrinter {
public:
    std::string error;

    void print(const Json& event) override {
        if (event.at("event") == "error") {
            error = event.at("text").get<std::string>();
        }
    }
};

/// The person of a script in the window: what only tells is shown there.
class WindowScriptPerson : public BatchUserInterface {
public:
    WindowScriptPerson(EventPrinter& printer, UserInterface& window) : BatchUserInterface(printer), window_(window) {}

    void showStatus(const std::string& text) override { window_.showStatus(text); }
    void showTitle(const std::string& title) override { window_.showTitle(title); }
    void setBusy(bool busy) override { window_.setBusy(busy); }
    void showProgress(double fraction) override { window_.showProgress(fraction); }
    void addRecentFile(const std::filesystem::path& path) override { window_.addRecentFile(path); }

private:
    UserInterface& window_;
};

/// The window has its own size, time and end: a script leaves them alone.
class WindowStage : public ScriptStage {
public:
    explicit WindowStage(Session& session) : session_(session) {}

    void paintIfAsked() override { session_.view().OnDraw(); }
    void resizeView(int, int) override {}
    void passTime(std::int64_t) override {}
    bool takeCloseRequest() override { return false; }
    DrawPixels pixelDrawer() override { return velmora::pixelDrawer(); }
    MaybeFailure leaveProgram() override {
        return ScriptFailure{"a script in the window does not leave the program", "leave the line out"};
    }

private:
    Session& session_;
};

} // namespace

std::optional<ScriptStop> runWindowScript(Session& session, UserInterface& person,
                                          const std::filesystem::path& script) {
    std::ifstream file;
    if (canHoldScript(script)) {
        file.open(script);
    }
    if (!file.is_open()) {
        return ScriptStop{0, {}, "It cannot be read"};
    }
    ErrorKeeper errors;
    WindowScriptPerson reader(errors, person);
    WindowStage stage(session);
    ScriptLines lines(session, reader, errors, stage);
    std::optional<ScriptStop> stop;
    session.performAs(reader, [&] {
        const BusyScope busy(person);
        std::int64_t number = 0;
        std::string line;
        while (!stop && readScriptLine(file, ++number, line)) {
            try {
                if (lines.run(number, line) != ScriptLines::Next::GoOn) {
                    stop = ScriptStop{number, line, errors.error};
                }
            } catch (const std::exception& failure) {
                stop = ScriptStop{number, line, causeOf(failure)};
            }
        }
    });
    return stop;
}

} // namespace velmora
