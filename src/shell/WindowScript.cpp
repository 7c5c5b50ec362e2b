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

/// The window has its own size and time: a script leaves them alone.
class WindowStage : public ScriptStage {
public:
    WindowStage(Session& session, const BatchUserInterface& person) : session_(session), person_(person) {}

    bool leaves() const { return leaves_; }

    void paintIfAsked() override { session_.view().OnDraw(); }
    void resizeView(int, int) override {}
    void passTime(std::int64_t) override {}
    bool takeCloseRequest() override { return false; }
    DrawPixels pixelDrawer() override { return velmora::pixelDrawer(); }
    /// Whoever did not answer the question does not leave by it.
    MaybeFailure leaveProgram() override {
        leaves_ = session_.leave() && !person_.failure();
        return std::nullopt;
    }

private:
    Session& session_;
    const BatchUserInterface& person_;
    bool leaves_ = false;
};

} // namespace

WindowScriptEnd runWindowScript(Session& session, UserInterface& person, const std::filesystem::path& script) {
    WindowScriptEnd end;
    std::ifstream file;
    if (canHoldScript(script)) {
        file.open(script);
    }
    if (!file.is_open()) {
        end.stop = ScriptStop{0, {}, "It cannot be read"};
        return end;
    }
    ErrorKeeper errors;
    WindowScriptPerson reader(errors, person);
    WindowStage stage(session, reader);
    ScriptLines lines(session, reader, errors, stage);
    session.performAs(reader, [&] {
        const BusyScope busy(person);
        std::int64_t number = 0;
        std::string line;
        while (!end.stop && !stage.leaves() && readScriptLine(file, ++number, line)) {
            try {
                if (lines.run(number, line) == ScriptLines::Next::Fail) {
                    end.stop = ScriptStop{number, line, errors.error};
                }
            } catch (const std::exception& failure) {
                end.stop = ScriptStop{number, line, causeOf(failure)};
            }
        }
    });
    end.leaves = !end.stop && stage.leaves();
    return end;
}

} // namespace velmora
