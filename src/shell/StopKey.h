#pragma once

#include <QObject>

namespace velmora {

/// Looks, in the middle of long work, whether the user pressed Esc. What else was typed or clicked meanwhile is
/// dropped, and timers wait: nothing else begins while the work goes on.
class StopKey : public QObject {
public:
    /// Whether it was pressed since the last question.
    bool wasPressed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool pressed_ = false;
};

} // namespace velmora
