#pragma once

#include <QDockWidget>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

class QListWidget;
class QListWidgetItem;

namespace velmora {

/// What was done, line by line as a script, and the way back and forth along it.
class JournalPanel : public QDockWidget {
    Q_OBJECT

public:
    explicit JournalPanel(QWidget* parent = nullptr);

    /// `later` are lines that were gone back over. `leadsTo` tells whether one can go to the state behind so many
    /// lines.
    void showLines(const std::vector<std::string>& lines, const std::vector<std::string>& later,
                   const std::function<bool(std::size_t)>& leadsTo);

signals:
    void saveWanted();
    void runWanted();
    /// The model is wanted as it was behind so many lines.
    void stateWanted(std::size_t lines);

private:
    void copy();
    void choose(const QListWidgetItem& line);

    QListWidget* lines_;
};

} // namespace velmora
