#include "JournalPanel.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt_text.h"

namespace velmora {

JournalPanel::JournalPanel(QWidget* parent) : QDockWidget(tr("Journal"), parent), lines_(new QListWidget) {
    setObjectName(QStringLiteral("options.journal.panel"));
    lines_->setObjectName(QStringLiteral("lines"));
    lines_->setAccessibleName(tr("What was done"));
    lines_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(lines_, &QListWidget::itemClicked, this, [this](const QListWidgetItem* line) { choose(*line); });
    connect(lines_, &QListWidget::itemActivated, this, [this](const QListWidgetItem* line) { choose(*line); });
    auto* inside = new QWidget(this);
    auto* column = new QVBoxLayout(inside);
    column->addWidget(lines_);
    auto* row = new QHBoxLayout;
    const auto addButton = [&](const QString& text, const char* name, auto&& clicked) {
        auto* button = new QPushButton(text, inside);
        button->setObjectName(QLatin1String(name));
        connect(button, &QPushButton::clicked, this, clicked);
        row->addWidget(button);
    };
    addButton(tr("&Copy"), "copy", [this] { emit copyWanted(); });
    addButton(tr("&Save..."), "save", [this] { emit saveWanted(); });
    addButton(tr("&Run..."), "run", [this] { emit runWanted(); });
    row->addStretch();
    column->addLayout(row);
    setWidget(inside);
}

/// What is there already stays: the list grows at its end, and lines that were picked out stay so.
void JournalPanel::showLines(const std::vector<std::string>& lines, const std::vector<std::string>& later,
                             const std::function<std::optional<std::size_t>(std::size_t)>& leadsTo) {
    const int done = static_cast<int>(lines.size());
    const int all = done + static_cast<int>(later.size());
    const bool grew = all != lines_->count();
    for (int row = 0; row < all; ++row) {
        const auto i = static_cast<std::size_t>(row);
        const QString text = qtText(row < done ? lines[i] : later[i - lines.size()]);
        if (row == lines_->count()) {
            lines_->addItem(text);
        }
        QListWidgetItem& item = *lines_->item(row);
        if (item.text() != text) {
            item.setText(text);
        }
        QFont font = lines_->font();
        font.setItalic(row >= done);
        item.setFont(font);
        item.setForeground(lines_->palette().brush(row < done ? QPalette::Text : QPalette::PlaceholderText));
        const auto leads = leadsTo(i + 1);
        item.setToolTip(!leads           ? tr("The model as it was then is not kept")
                        : *leads > i + 1 ? tr("Click: to the end of this work, line %1").arg(*leads)
                        : row < done     ? tr("Click: back to the model as it was then")
                                         : tr("Click: forth to the model as it was then"));
    }
    while (lines_->count() > all) {
        delete lines_->takeItem(all);
    }
    markStanding(done - 1);
    if (grew) {
        lines_->scrollToBottom();
    }
}

/// The line behind which the model stands is the selected one, wherever a click went.
void JournalPanel::markStanding(int row) {
    if (lines_->selectedItems().size() < 2) {
        lines_->setCurrentRow(row, QItemSelectionModel::ClearAndSelect);
    }
}

/// A click that selects more lines, or fewer, is for Copy.
void JournalPanel::choose(const QListWidgetItem& line) {
    if ((QGuiApplication::keyboardModifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) == Qt::NoModifier) {
        emit stateWanted(static_cast<std::size_t>(lines_->row(&line)) + 1);
    }
}

std::vector<std::string> JournalPanel::pickedLines() const {
    std::vector<std::string> picked;
    for (int row = 0; row < lines_->count(); ++row) {
        if (lines_->item(row)->isSelected()) {
            picked.push_back(plainBytes(lines_->item(row)->text()));
        }
    }
    return picked.size() > 1 ? picked : std::vector<std::string>();
}

} // namespace velmora
