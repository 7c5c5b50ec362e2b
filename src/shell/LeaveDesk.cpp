#include "LeaveDesk.h"

#include <QApplication>
#include <QSessionManager>
#include <utility>

#include "MainFrame.h"
#include "RescueCopy.h"
#include "VelmoraDoc.h"
#include "messages.h"
#include "rescue_format.h"

namespace velmora {

LeaveDesk::LeaveDesk(MainFrame& frame, const std::filesystem::path& root) : frame_(frame), root_(root) {
    if (!root_.empty()) {
        rescue_ = std::make_unique<RescueCopy>(frame_.document(), root_);
    }
    connect(&signals_, &LeaveSignals::came, this, &LeaveDesk::leaveBySignal);
    // Answered before the signal returns: the session waits for that alone.
    connect(qApp, &QGuiApplication::commitDataRequest, this, &LeaveDesk::commitData, Qt::DirectConnection);
}

LeaveDesk::~LeaveDesk() = default;

bool LeaveDesk::offerLeft() {
    if (rescue_ == nullptr) {
        return false;
    }
    UserInterface& ui = frame_.document().ui();
    for (RescueFolder& folder : RescueFolder::left(root_)) {
        const auto bytes = folder.read();
        auto model = bytes ? decodeRescue(*bytes) : std::nullopt;
        if (!model) {
            ui.showMessage(message::rescueUnreadable(folder.copy().string()));
            continue;
        }
        switch (ui.askOrNone(message::bringBack(model->path))) {
        case Answer::Yes:
            frame_.document().takeRescued(std::move(*model));
            frame_.session().remark("The changes of a rescue copy came back");
            rescue_->adopt(std::move(folder));
            return true;
        case Answer::No:
            folder.remove();
            break;
        case Answer::None:
            break; // it is offered again at the next start
        }
    }
    return false;
}

bool LeaveDesk::rescued() {
    return !frame_.document().worthRescuing() || (rescue_ != nullptr && rescue_->writeNow());
}

void LeaveDesk::leaveBySignal() {
    if (rescued()) {
        if (rescue_ != nullptr && frame_.document().worthRescuing()) {
            rescue_->keep();
        }
        frame_.keepWindow();
        emit left();
    } else {
        frame_.close();
    }
}

bool LeaveDesk::sessionMayEnd(bool mayAsk) {
    return rescued() || (mayAsk && frame_.mayLeave());
}

void LeaveDesk::commitData(QSessionManager& manager) {
    const bool mayAsk = !rescued() && manager.allowsInteraction();
    if (!sessionMayEnd(mayAsk)) {
        manager.cancel();
    }
    if (mayAsk) {
        manager.release();
    }
}

} // namespace velmora
