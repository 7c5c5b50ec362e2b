#pragma once

#include <QDialog>

namespace velmora {

/// The list of all keys and of what the mouse does in the view.
class KeyListBox : public QDialog {
    Q_OBJECT

public:
    explicit KeyListBox(QWidget* parent);
};

} // namespace velmora
