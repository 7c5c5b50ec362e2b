#include "state_fixture.h"

#include "VelmoraDoc.h"
#include "command_table.h"

namespace velmora::test {

StateTest::StateTest() : document_(std::make_unique<VelmoraDoc>(ui, folder.path())), doc(*document_) {
    document_->onNewDocument();
    document_->attachView(view);
    forget();
}

StateTest::~StateTest() = default;

void StateTest::run(const std::string& id) {
    ASSERT_FALSE(isCommandOff(doc, id)) << id;
    call(id);
}

void StateTest::runWith(const std::string& id, const std::vector<std::pair<std::string, std::string>>& fields) {
    ui.dialogs.push_back(fields);
    run(id);
}

void StateTest::call(const std::string& id) {
    const Command* command = findCommand(id);
    ASSERT_NE(command, nullptr) << id;
    ASSERT_TRUE(command->run) << id;
    ui.gaveUp = false;
    ui.refused = false;
    document_->runCommand(command->run, [this] { return ui.gaveUp; });
}

void StateTest::open(const std::filesystem::path& path) {
    document_->onOpenDocument(path);
}

void StateTest::openAll(const std::vector<std::filesystem::path>& paths) {
    document_->onOpenDocuments(paths);
}

std::filesystem::path StateTest::saveTarget() {
    return document_->saveTarget();
}

void StateTest::showStatus(const std::string& text) {
    document_->ShowStatus(text);
}

void StateTest::savePointUndo() {
    document_->SavePointUndo();
}

void StateTest::savePatchUndo() {
    document_->SavePatchUndo();
}

void StateTest::prepareDragCorrection() {
    document_->prepareDragCorrection();
}

void StateTest::placeDraggedPoint(const zVec<double>& position) {
    document_->placeDraggedPoint(position);
}

void StateTest::take(const Pick& pick) {
    document_->takePick(pick);
}

const std::string& StateTest::extentStatus() const {
    return document_->extentStatus();
}

bool StateTest::saveModified() {
    return document_->saveModified();
}

void StateTest::bendCapturedCurve(const zVec<double>& target, int plane) {
    document_->bendCapturedCurve(target, plane);
}

void StateTest::updateBounds() {
    document_->updateBounds();
}

void StateTest::redraw() {
    document_->redraw();
}

void StateTest::leaveRegimes() {
    document_->leaveRegimes();
}

void StateTest::releaseButton() {
    document_->moveRegimeAtRelease();
}

void StateTest::attach(DocumentView& further) {
    document_->attachView(further);
}

void StateTest::detach(DocumentView& further) {
    document_->detachView(further);
}

void StateTest::hold(PatchList model) {
    doc.patches = std::move(model);
    doc.modelFile.chosenPath = folder / "wing.apt";
    doc.retitle();
    document_->updateBounds();
    forget();
}

} // namespace velmora::test
