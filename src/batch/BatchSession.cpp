#include "BatchSession.h"

#include "VelmoraDoc.h"
#include "about.h"
#include "messages.h"
#include "picture_program.h"

namespace velmora {

BatchSession::BatchSession(EventPrinter& printer, const Setup& setup)
    : printer_(printer), ui_(printer), session_(ui_, surface_, *this, setup.documentsFolder),
      lines_(session_, ui_, printer, *this), echo_(setup.echo) {
    if (setup.overwrite) {
        ui_.agreeToOverwrite();
    }
    session_.view().OnCreate();
    session_.view().OnSize(setup.viewSize.width, setup.viewSize.height);
    session_.start();
    paint();
}

BatchSession::Next BatchSession::run(std::int64_t number, std::string_view line) {
    const ScriptLine words = splitLine(line);
    if (echo_ && (!words.words.empty() || words.failure)) {
        printer_.print({{"event", "echo"}, {"line", number}, {"text", std::string(line)}});
    }
    return lines_.run(number, line);
}

BatchSession::Next BatchSession::run(std::int64_t number, std::span<const std::string> words) {
    return lines_.run(number, words);
}

BatchSession::Next BatchSession::run(std::int64_t number, const std::function<MaybeFailure(Session&)>& work) {
    return lines_.run(number, [&] { return work(session_); });
}

// ---- What a front end does in its own way ---------------------------------------------------------------------------

void BatchSession::exit() {
    // Whoever did not answer the question does not leave by it.
    if (session_.leave() && !ui_.failure()) {
        lines_.leave();
    }
}

MaybeFailure BatchSession::leaveProgram() {
    exit();
    return std::nullopt;
}

void BatchSession::showGuide() {
    session_.document().ShowStatus("The user guide is shown by the window; --help-commands lists the commands");
}

void BatchSession::showKeys() {
    session_.document().ShowStatus("Keys and mouse are the window's; the user guide lists them");
}

void BatchSession::showAbout() {
    session_.document().ui().showMessage({Severity::Info, aboutText()});
}

void BatchSession::savePicture() {
    velmora::savePicture(session_, pixelDrawer());
}

void BatchSession::copyPicture() {
    session_.document().ui().showMessage(message::clipboardOfTheWindow);
}

DrawPixels BatchSession::pixelDrawer() {
    return programDrawer();
}

void BatchSession::showPanel(Panel panel) {
    const char* line = panel == Panel::Report      ? "print report"
                       : panel == Panel::CurvePlot ? "print curve"
                       : panel == Panel::Journal   ? "print journal"
                                                   : "print read";
    session_.document().ui().showMessage(message::panelOfTheWindow(line));
}

// ---- Stage ----------------------------------------------------------------------------------------------------------

void BatchSession::paint() {
    session_.view().OnDraw();
    surface_.clearRepaintRequest();
}

void BatchSession::paintIfAsked() {
    if (surface_.repaintRequested()) {
        paint();
    }
}

void BatchSession::resizeView(int width, int height) {
    session_.view().OnSize(width, height);
    if (width >= 1 && height >= 1) {
        // A window that changed its size is painted anew.
        surface_.requestRepaint();
    }
}

void BatchSession::passTime(std::int64_t duration) {
    const std::int64_t end = surface_.clock() + duration;
    while (surface_.advanceToTick(end)) {
        session_.view().OnTimer();
        paint();
    }
    surface_.advanceTo(end);
}

} // namespace velmora
