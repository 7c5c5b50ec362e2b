#include "KeyListBox.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QTableWidget>
#include <QVBoxLayout>

#include "key_list.h"
#include "qt_text.h"

namespace velmora {

namespace {

constexpr QSize boxSize{720, 560};

void addRow(QTableWidget& table, const KeyEntry& entry) {
    const int row = table.rowCount();
    table.insertRow(row);
    table.setItem(row, 0, new QTableWidgetItem(qtText(entry.keys)));
    table.setItem(row, 1, new QTableWidgetItem(qtText(entry.act)));
    table.item(row, 1)->setToolTip(qtText(entry.hint));
}

} // namespace

KeyListBox::KeyListBox(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("keyListBox"));
    setWindowTitle(tr("Keys and Mouse"));
    auto* table = new QTableWidget(0, 2, this);
    table->setObjectName(QStringLiteral("keyList"));
    table->setAccessibleName(windowTitle());
    table->setHorizontalHeaderLabels({tr("Key or mouse"), tr("What it does")});
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->verticalHeader()->hide();
    table->setTabKeyNavigation(false);
    for (const KeyEntry& entry : mouseActs()) {
        addRow(*table, entry);
    }
    for (const KeyEntry& entry : keyList()) {
        addRow(*table, entry);
    }
    table->resizeColumnToContents(0);
    table->horizontalHeader()->setStretchLastSection(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* column = new QVBoxLayout(this);
    column->addWidget(table);
    column->addWidget(buttons);
    resize(boxSize);
}

} // namespace velmora
