#pragma once

#include <QDialog>

#include "dlgFilesList.h"

class QComboBox;
class QGridLayout;
class QLabel;
class QLayout;
class QLineEdit;
class QListWidget;

namespace velmora {

/// The window of the project list editor. It works on a copy of the list, which takes the place of the list on OK.
class FilesListDialog : public QDialog {
    Q_OBJECT

public:
    /// `list` must outlive the dialog.
    explicit FilesListDialog(dlgFilesList& list, QWidget* parent = nullptr);
    ~FilesListDialog() override;

    void accept() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeControls();
    void placeControls();
    QLayout* makeMoveButtons();
    void addLine();
    void removeLine();
    void takeName();
    void takeDirectory();
    void browse();
    void showList();

    dlgFilesList& list_;
    dlgFilesList working_;
    QLineEdit* name_;
    QLineEdit* directory_;
    QLabel* projectPath_;
    QListWidget* files_;
    QListWidget* project_;
    QComboBox* drives_;
};

} // namespace velmora
