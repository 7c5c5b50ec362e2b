#pragma once

#include <QDialog>
#include <vector>

#include "DialogForm.h"

class QButtonGroup;
class QCheckBox;
class QGridLayout;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace velmora {

class CRegularInput;

/// The window of the point table. The table holds the model and the rules; this shows them. Controls are named after
/// the table's fields: "X" ... "bufferZ", "paste", "action.1" ... "action.8", "act", "rows".
class RegularInputDialog : public QDialog {
    Q_OBJECT

public:
    /// `table` must outlive the dialog.
    explicit RegularInputDialog(CRegularInput& table, QWidget* parent = nullptr);

    /// Asks before points that were typed are gone: no Undo brings them back.
    void reject() override;

private:
    /// A field of the form and the control that shows it.
    struct Entry {
        std::string key;
        QLineEdit* edit = nullptr;
    };

    void setColumnWidths();
    void placeNumbers(QGridLayout& grid);
    void placeActions(QGridLayout& grid);
    void placeRows(QGridLayout& grid);
    bool takeTyped();
    bool holdsPoints() const;
    void act();
    void selectRow(int row);
    void showTable();
    void focusOn(const std::string& key);

    CRegularInput& table_;
    DialogForm form_;
    std::vector<Entry> entries_;
    QButtonGroup* actions_ = nullptr;
    QCheckBox* paste_ = nullptr;
    QPushButton* act_ = nullptr;
    QTableWidget* rows_ = nullptr;
};

} // namespace velmora
