#pragma once

#include <QDialog>

namespace velmora {

/// The program's name and version, the machine's memory and disk space, what the program runs on, and its licence.
class AboutBox : public QDialog {
    Q_OBJECT

public:
    /// `openGl`: the version of the view's context; empty: it has none.
    explicit AboutBox(const QString& openGl, QWidget* parent = nullptr);
};

} // namespace velmora
