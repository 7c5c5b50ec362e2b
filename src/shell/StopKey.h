#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <vector>

namespace velmora {

/// Looks, in the middle of long work, whether the user pressed Esc or the button that ends it. What else was typed or
/// clicked meanwhile is dropped, timers wait, and the picture stays as it is: the model is neither old nor new.
class StopKey : public QObject {
public:
    /// Whether it was pressed since the last question. `button` ends the work too, `picture` is not painted; both may
    /// be null.
    bool wasPressed(QWidget* button, QWidget* picture);
    /// Has that painted which was not.
    void makeUpForPaints();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool isOfPicture(const QObject* watched) const;

    QWidget* button_ = nullptr;
    QWidget* picture_ = nullptr;
    bool pressed_ = false;
    std::vector<QPointer<QWidget>> unpainted_;
};

} // namespace velmora
