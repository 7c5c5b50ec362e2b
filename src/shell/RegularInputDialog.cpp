#include "RegularInputDialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "CRegularInput.h"
#include "FormDialog.h"
#include "field_words.h"
#include "qt_text.h"
#include "run_dialog.h"

namespace velmora {

RegularInputDialog::RegularInputDialog(CRegularInput& table, QWidget* parent)
    : QDialog(parent), table_(table), form_(describe(table)) {
    setObjectName(qtText(form_.name));
    setWindowTitle(qtText(form_.title));
    auto* grid = new QGridLayout(this);
    placeRows(*grid);
    placeNumbers(*grid);
    placeActions(*grid);
    showTable();
    focusOn("X");
}

void RegularInputDialog::placeRows(QGridLayout& grid) {
    rows_ = new QTableWidget(0, 6, this);
    rows_->setObjectName(QStringLiteral("rows"));
    rows_->setAccessibleName(tr("Points of the line"));
    rows_->setHorizontalHeaderLabels({"X", "Y", "Z", "K", "N", "M"});
    rows_->verticalHeader()->hide();
    rows_->setSelectionBehavior(QAbstractItemView::SelectRows);
    rows_->setSelectionMode(QAbstractItemView::SingleSelection);
    rows_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    setColumnWidths();
    connect(rows_, &QTableWidget::currentCellChanged, this, [this](int row) { selectRow(row); });
    grid.addWidget(rows_, 0, 0, 1, 2);
}

/// Wide enough for any number: its exponent must not be cut.
void RegularInputDialog::setColumnWidths() {
    constexpr int margins = 24;
    constexpr int shownRows = 7;
    const int coordinate = fontMetrics().horizontalAdvance(QStringLiteral("+0.000000e+000")) + margins;
    const int index = fontMetrics().horizontalAdvance(QStringLiteral("0000000")) + margins;
    for (int column = 0; column < rows_->columnCount(); ++column) {
        rows_->setColumnWidth(column, column < 3 ? coordinate : index);
    }
    rows_->setMinimumWidth(3 * (coordinate + index) + rows_->verticalScrollBar()->sizeHint().width() + margins);
    rows_->setMinimumHeight((shownRows + 1) * rows_->verticalHeader()->defaultSectionSize());
}

void RegularInputDialog::placeNumbers(QGridLayout& grid) {
    auto* frame = new QGroupBox(tr("Point"), this);
    auto* fields = new QGridLayout(frame);
    for (const DialogField& field : form_.fields) {
        auto* edit = new QLineEdit(frame);
        edit->setObjectName(qtText(field.key));
        edit->setAccessibleName(qtText(field.label));
        if (field.kind == FieldKind::Real) {
            edit->setMinimumWidth(widthOfReals(*edit));
        }
        if (field.readOnly) {
            lookReadOnly(*edit);
        }
        auto* label = new QLabel(qtText(field.label), frame);
        label->setBuddy(edit);
        const int row = static_cast<int>(entries_.size());
        fields->addWidget(label, row, 0);
        fields->addWidget(edit, row, 1);
        entries_.push_back({field.key, edit});
    }
    grid.addWidget(frame, 1, 0);
}

void RegularInputDialog::placeActions(QGridLayout& grid) {
    auto* frame = new QGroupBox(tr("Action"), this);
    auto* column = new QVBoxLayout(frame);
    actions_ = new QButtonGroup(this);
    for (std::int32_t action = 1; action <= CRegularInput::actionCount; ++action) {
        auto* radio = new QRadioButton(qtText(CRegularInput::radioText(action)), frame);
        radio->setObjectName(QStringLiteral("action.%1").arg(action));
        actions_->addButton(radio, action);
        column->addWidget(radio);
    }
    connect(actions_, &QButtonGroup::idClicked, this, [this](int action) {
        table_.chooseAction(action);
        showTable();
        focusOn("X");
    });
    paste_ = new QCheckBox(tr("Paste"), frame);
    paste_->setObjectName(QStringLiteral("paste"));
    connect(paste_, &QCheckBox::clicked, this, [this](bool checked) {
        table_.checkPaste(checked);
        showTable();
        focusOn(checked ? "bufferX" : "X");
    });
    column->addWidget(paste_);
    auto* buttons = new QDialogButtonBox(this);
    act_ = buttons->addButton(QString(), QDialogButtonBox::ActionRole);
    act_->setObjectName(QStringLiteral("act"));
    act_->setDefault(true);
    connect(act_, &QPushButton::clicked, this, &RegularInputDialog::act);
    connect(buttons->addButton(QDialogButtonBox::Cancel), &QPushButton::clicked, this, &QDialog::reject);
    column->addStretch();
    column->addWidget(buttons);
    grid.addWidget(frame, 1, 1);
}

/// Takes the live fields; a text that is no number is told and ends the action.
bool RegularInputDialog::takeTyped() {
    for (const Entry& entry : entries_) {
        const DialogField& field = *form_.find(entry.key);
        const QString text = entry.edit->text().trimmed();
        if (field.readOnly || !field.on || text == qtText(fieldText(field))) {
            continue;
        }
        if (const auto refusal = setField(form_, entry.key, plainBytes(text))) {
            QMessageBox box(QMessageBox::Warning, windowTitle(), qtText(refusal->message), QMessageBox::Ok, this);
            box.setObjectName(QStringLiteral("messageBox"));
            nameField(box, field);
            box.exec();
            focusOn(entry.key);
            return false;
        }
    }
    return true;
}

void RegularInputDialog::act() {
    if (!takeTyped()) {
        return;
    }
    if (table_.actionRegime == CRegularInput::Ok) {
        accept();
        return;
    }
    table_.act([this](CRegularFind& find) {
        DialogForm form = describe(find, &table_.regularPatches);
        openDialog(form);
        FormDialog dialog(form, this);
        return runDialog(dialog);
    });
    showTable();
    focusOn("X");
}

bool RegularInputDialog::holdsPoints() const {
    const auto hasPoints = [](const Patch& patch) {
        return std::any_of(patch.begin(), patch.end(), [](const PointList& line) { return !line.empty(); });
    };
    return std::any_of(table_.regularPatches.begin(), table_.regularPatches.end(), hasPoints);
}

void RegularInputDialog::reject() {
    if (holdsPoints()) {
        QMessageBox box(QMessageBox::Question, windowTitle(),
                        tr("The points that were typed will be lost. Leave the table?"),
                        QMessageBox::Yes | QMessageBox::No, this);
        box.setObjectName(QStringLiteral("messageBox"));
        box.setDefaultButton(QMessageBox::No);
        if (box.exec() != QMessageBox::Yes) {
            return;
        }
    }
    QDialog::reject();
}

void RegularInputDialog::selectRow(int row) {
    if (row >= 0 && table_.select(row + 1)) {
        showTable();
    }
}

void RegularInputDialog::showTable() {
    openDialog(form_);
    for (const Entry& entry : entries_) {
        const DialogField& field = *form_.find(entry.key);
        entry.edit->setText(qtText(fieldText(field)));
        entry.edit->setCursorPosition(0); // the sign stays in sight
        entry.edit->setEnabled(field.on);
        entry.edit->setToolTip(valuesOf(field));
    }
    for (std::int32_t action = 1; action <= CRegularInput::actionCount; ++action) {
        QAbstractButton* radio = actions_->button(action);
        radio->setEnabled(table_.actionOn[static_cast<std::size_t>(action - 1)]);
        radio->setChecked(action == table_.actionRegime);
    }
    paste_->setChecked(table_.pasteChecked);
    act_->setText(qtText(CRegularInput::buttonText(table_.actionRegime)));
    const QSignalBlocker quiet(rows_);
    rows_->setRowCount(static_cast<int>(table_.rows.size()));
    for (int row = 0; row < rows_->rowCount(); ++row) {
        const CRegularInput::Row& point = table_.rows[static_cast<std::size_t>(row)];
        const QStringList cells = {qtText(point.coordinates[0]), qtText(point.coordinates[1]),
                                   qtText(point.coordinates[2]), QString::number(point.K),
                                   QString::number(point.N),     QString::number(point.M)};
        for (int column = 0; column < cells.size(); ++column) {
            rows_->setItem(row, column, new QTableWidgetItem(cells[column]));
        }
    }
    rows_->setCurrentCell(table_.M - 1, 0);
}

void RegularInputDialog::focusOn(const std::string& key) {
    for (const Entry& entry : entries_) {
        if (entry.key == key && entry.edit->isEnabled()) {
            entry.edit->setFocus();
            entry.edit->selectAll();
            return;
        }
    }
    act_->setFocus();
}

} // namespace velmora
