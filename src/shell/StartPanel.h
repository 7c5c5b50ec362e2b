#pragma once

#include <QFrame>

class QLabel;

namespace velmora {

class RecentFiles;

/// What an empty view shows: how to open a model, the examples, the files of before, and what the mouse does.
class StartPanel : public QFrame {
    Q_OBJECT

public:
    /// Lies in the middle of `parent`.
    StartPanel(const RecentFiles& recent, QWidget* parent);

    /// The folder of the models that come with the program; empty when it is not there.
    static QString examplesFolder();

signals:
    void commandChosen(const QString& id);
    void fileChosen(const QString& path);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void fill();
    void settle();

    const RecentFiles& recent_;
    QLabel* text_;
};

} // namespace velmora
