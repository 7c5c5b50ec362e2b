#pragma once

#include <QObject>
#include <memory>

#include "guide.h"

namespace velmora {

class HelpWindow;

/// Opens the guide at the place where it is needed: at a menu's highlighted entry, or at the command whose dialog
/// waits, when F1 is pressed there.
class HelpDesk : public QObject {
    Q_OBJECT

public:
    explicit HelpDesk(QObject* parent);
    ~HelpDesk() override;

    /// Opens the window of the guide, or brings it to the front.
    void open(const GuidePlace& place = {});

    /// Names the command that runs, for as long as this lives.
    class Running {
    public:
        Running(HelpDesk& desk, const Command& command) : desk_(desk), before_(desk.running_) {
            desk_.running_ = &command;
        }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
        ~Running() { desk_.running_ = before_; }

    private:
        HelpDesk& desk_;
        const Command* before_;
    };

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool helpInMenu();
    bool helpInDialog();

    std::unique_ptr<HelpWindow> window_;
    const Command* running_ = nullptr;
};

} // namespace velmora
