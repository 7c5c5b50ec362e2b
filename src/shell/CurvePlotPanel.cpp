#include "CurvePlotPanel.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace velmora {

CurvePlotPanel::CurvePlotPanel(QWidget* parent)
    : QDockWidget(tr("Curve plot"), parent), quantity_(new QComboBox), plot_(new PlotWidget) {
    setObjectName(QStringLiteral("options.curvePlot.panel"));
    auto* inside = new QWidget(this);
    auto* column = new QVBoxLayout(inside);
    auto* row = new QHBoxLayout;
    for (const PlotQuantity quantity : plotQuantities) {
        quantity_->addItem(QString::fromLatin1(nameOf(quantity)), static_cast<int>(quantity));
    }
    quantity_->setObjectName(QStringLiteral("quantity"));
    auto* label = new QLabel(tr("Value over the &length"), inside);
    label->setBuddy(quantity_);
    row->addWidget(label);
    row->addWidget(quantity_);
    row->addStretch();
    const auto addButton = [&](const QString& text, const char* name, auto&& clicked) {
        auto* button = new QPushButton(text, inside);
        button->setObjectName(QLatin1String(name));
        connect(button, &QPushButton::clicked, this, clicked);
        row->addWidget(button);
    };
    addButton(tr("Save &numbers..."), "saveTable", [this] { emit tableWanted(); });
    addButton(tr("Save &picture..."), "savePicture", [this] { emit pictureWanted(); });
    column->addLayout(row);
    column->addWidget(plot_, 1);
    setWidget(inside);
    connect(quantity_, &QComboBox::currentIndexChanged, this, [this] { showPlot(); });
    connect(plot_, &PlotWidget::pointChosen, this, &CurvePlotPanel::pointChosen);
}

void CurvePlotPanel::showCurve(PointList curve, std::vector<PointList> neighbours) {
    if (curve != curve_ || neighbours != neighbours_) {
        curve_ = std::move(curve);
        neighbours_ = std::move(neighbours);
        showPlot();
    }
}

void CurvePlotPanel::showPlot() {
    plot_->showPlot(curvePlot(static_cast<PlotQuantity>(quantity_->currentData().toInt()), curve_, neighbours_));
}

} // namespace velmora
