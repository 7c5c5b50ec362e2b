#pragma once

#include <QStatusBar>

class QLabel;
class QProgressBar;
class QPushButton;

namespace velmora {

/// The status line: the message pane, the indicators of the lock keys, and a bar while long work runs.
class StatusLine : public QStatusBar {
    Q_OBJECT

public:
    explicit StatusLine(QWidget* parent = nullptr);

    /// Writes the message pane at once, without waiting for the event loop.
    void showText(const QString& text);
    QString text() const { return text_; }
    /// Shows a hint in place of the message until an empty hint or the next message comes.
    void showHint(const QString& hint);
    /// What the mouse is for now, at the right; empty: nothing out of the ordinary.
    void showMode(const QString& mode);
    /// What the mouse points at, behind the mode until an empty text comes: the message stays in sight.
    void showPointed(const QString& text);
    /// Asks the window system for the lock keys.
    void refreshLocks();
    /// Shows the bar at `fraction`, 0 to 1, at once: painted here and now, no event of the user is let in.
    void showProgress(double fraction);
    void hideProgress();
    bool showsProgress() const;
    /// What the message pane says of the work while the bar is shown; empty: nothing.
    void nameWork(const QString& work) { work_ = work; }
    /// The button beside the bar by which the work is given up.
    QPushButton& cancelButton() { return *cancel_; }

private:
    QLabel* addIndicator(const QString& name, const QString& accessibleName);

    QString text_;
    QString modeText_;
    QString pointed_;
    QString work_;
    QLabel* message_;
    QLabel* mode_;
    QLabel* caps_;
    QLabel* num_;
    QLabel* scroll_;
    QProgressBar* progress_;
    QPushButton* cancel_;
};

} // namespace velmora
