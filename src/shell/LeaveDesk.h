#pragma once

#include <QObject>
#include <filesystem>
#include <memory>

#include "LeaveSignals.h"

class QSessionManager;

namespace velmora {

class MainFrame;
class RescueCopy;

/// What happens to a model with changes when the program is to end by other ways than its window: a signal, the end of
/// the session, a crash. Its rescue copy is kept then, and offered at the next start.
class LeaveDesk : public QObject {
    Q_OBJECT

public:
    /// `frame` must outlive this object. With an empty `root` no copies are kept, and those ways ask as the window does.
    LeaveDesk(MainFrame& frame, const std::filesystem::path& root);
    ~LeaveDesk() override;

    /// Offers what runs before this one left behind, the newest first, until one is taken; true then.
    bool offerLeft();
    /// Ends the program, with the changes in a rescue copy; where that cannot be, asks as the window does.
    void leaveBySignal();
    /// The session is about to end; false when it must not.
    bool sessionMayEnd(bool mayAsk);

signals:
    /// The program is to end without further questions.
    void left();

private:
    void commitData(QSessionManager& manager);
    bool rescued();

    MainFrame& frame_;
    std::filesystem::path root_;
    std::unique_ptr<RescueCopy> rescue_;
    LeaveSignals signals_;
};

} // namespace velmora
