#pragma once

class QDialog;

namespace velmora {

/// Runs a modal dialog to its end. True: it was accepted. The window behind it is active afterwards: when a question
/// of the dialog's goes together with it, some window managers give the focus to none.
bool runDialog(QDialog& dialog);

} // namespace velmora
