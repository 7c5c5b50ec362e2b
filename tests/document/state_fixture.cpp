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
    document_->runCommand(command->run);
}

void StateTest::open(const std::filesystem::path& path) {
    document_->onOpenDocument(path);
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
