#include "run_dialog.h"

#include <QDialog>

namespace velmora {

bool runDialog(QDialog& dialog) {
    const bool accepted = dialog.exec() == QDialog::Accepted;
    if (QWidget* const behind = dialog.parentWidget()) {
        behind->activateWindow();
    }
    return accepted;
}

} // namespace velmora
