#include "ReportPanel.h"

#include <QListWidget>
#include <utility>

#include "qt_text.h"

namespace velmora {

ReportPanel::ReportPanel(QWidget* parent) : QDockWidget(tr("Model report"), parent), list_(new QListWidget(this)) {
    setObjectName(QStringLiteral("options.report.panel"));
    list_->setObjectName(QStringLiteral("lines"));
    list_->setAccessibleName(tr("Report of the model"));
    connect(list_, &QListWidget::itemClicked, this, &ReportPanel::choose);
    connect(list_, &QListWidget::itemActivated, this, &ReportPanel::choose);
    setWidget(list_);
}

void ReportPanel::showLines(std::vector<ReportLine> lines) {
    lines_ = std::move(lines);
    list_->clear();
    for (const ReportLine& line : lines_) {
        auto* item = new QListWidgetItem(qtText(line.text), list_);
        if (line.place) {
            item->setToolTip(tr("Captures this point"));
        }
    }
}

void ReportPanel::choose(const QListWidgetItem* item) {
    const auto row = static_cast<std::size_t>(list_->row(item));
    if (row < lines_.size() && lines_[row].place) {
        const auto [patch, section, point] = *lines_[row].place;
        emit placeChosen(patch, section, point);
    }
}

} // namespace velmora
