#pragma once

#include <QDialog>

namespace velmora {

/// The program's name and version, and the machine's memory and disk space.
class AboutBox : public QDialog {
    Q_OBJECT

public:
    explicit AboutBox(QWidget* parent = nullptr);
};

} // namespace velmora
