#pragma once

#include <QDialog>

#include "dlgFolder.h"

class QComboBox;
class QLineEdit;
class QListWidget;

namespace velmora {

/// The window of the folder chooser: it shows where that stands and passes on what is chosen and typed.
class FolderDialog : public QDialog {
    Q_OBJECT

public:
    /// `chooser` must outlive the dialog.
    explicit FolderDialog(dlgFolder& chooser, QWidget* parent = nullptr);
    ~FolderDialog() override;

    /// OK: a path that was typed is entered first; one that cannot be keeps the dialog open.
    void accept() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool takeTyped();
    void enterLine();
    void showPlace();

    dlgFolder& chooser_;
    QLineEdit* path_;
    QListWidget* folders_;
    QComboBox* drives_;
};

/// Whether it is the pressing of Return or Enter.
bool isReturn(const QEvent& event);

/// Shows drives in a list with that of the folder `place` chosen.
void showDrives(QComboBox& box, const std::vector<std::string>& drives, const std::filesystem::path& place);

} // namespace velmora
