#pragma once

#include <QDockWidget>
#include <cstddef>
#include <functional>
#include <optional>
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

    /// `later` are lines that were gone back over. `leadsTo` tells for so many lines behind how many the state is to
    /// which one can go; none when it is not kept.
    void showLines(const std::vector<std::string>& lines, const std::vector<std::string>& later,
                   const std::function<std::optional<std::size_t>(std::size_t)>& leadsTo);
    /// The lines that a person picked out: several, as one alone marks where the model stands.
    std::vector<std::string> pickedLines() const;

signals:
    void copyWanted();
    void saveWanted();
    void runWanted();
    /// The model is wanted as it was behind so many lines.
    void stateWanted(std::size_t lines);

private:
    void markStanding(int row);
    void choose(const QListWidgetItem& line);

    QListWidget* lines_;
};

} // namespace velmora
