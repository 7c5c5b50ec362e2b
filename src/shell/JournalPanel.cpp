#include "JournalPanel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
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
    addButton(tr("&Copy"), "copy", [this] { copy(); });
    addButton(tr("&Save..."), "save", [this] { emit saveWanted(); });
    addButton(tr("&Run..."), "run", [this] { emit runWanted(); });
    row->addStretch();
    column->addLayout(row);
    setWidget(inside);
}

/// What is there already stays: the list grows at its end, and what is selected stays selected.
void JournalPanel::showLines(const std::vector<std::string>& lines) {
    int same = 0;
    while (same < lines_->count() && same < static_cast<int>(lines.size()) &&
           lines_->item(same)->text() == qtText(lines[static_cast<std::size_t>(same)])) {
        ++same;
    }
    while (lines_->count() > same) {
        delete lines_->takeItem(lines_->count() - 1);
    }
    for (auto line = lines.begin() + same; line != lines.end(); ++line) {
        lines_->addItem(qtText(*line));
    }
    lines_->scrollToBottom();
}

/// The selected lines, or all when none is.
void JournalPanel::copy() {
    QString text;
    const bool all = lines_->selectedItems().isEmpty();
    for (int row = 0; row < lines_->count(); ++row) {
        if (all || lines_->item(row)->isSelected()) {
            text += lines_->item(row)->text() + QLatin1Char('\n');
        }
    }
    QGuiApplication::clipboard()->setText(text);
}

} // namespace velmora
