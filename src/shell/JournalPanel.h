#pragma once

#include <QDockWidget>
#include <string>
#include <vector>

class QListWidget;

namespace velmora {

/// What was done, line by line as a script.
class JournalPanel : public QDockWidget {
    Q_OBJECT

public:
    explicit JournalPanel(QWidget* parent = nullptr);

    void showLines(const std::vector<std::string>& lines);

signals:
    void saveWanted();
    void runWanted();

private:
    void copy();

    QListWidget* lines_;
};

} // namespace velmora
