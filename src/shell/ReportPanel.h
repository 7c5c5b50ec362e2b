#pragma once

#include <QDockWidget>
#include <cstdint>
#include <vector>

#include "report_lines.h"

class QListWidget;
class QListWidgetItem;

namespace velmora {

/// Sizes, quality and faults of the model. A line that speaks of a place leads there.
class ReportPanel : public QDockWidget {
    Q_OBJECT

public:
    explicit ReportPanel(QWidget* parent = nullptr);

    void showLines(std::vector<ReportLine> lines);

signals:
    /// A point of the grid, from 0.
    void placeChosen(std::int32_t patch, std::int32_t section, std::int32_t point);

private:
    void choose(const QListWidgetItem* item);

    QListWidget* list_;
    std::vector<ReportLine> lines_;
};

} // namespace velmora
