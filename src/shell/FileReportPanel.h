#pragma once

#include <QDockWidget>
#include <vector>

#include "FileRecord.h"

class QPlainTextEdit;

namespace velmora {

/// What came of the files that were read last, beside the view.
class FileReportPanel : public QDockWidget {
    Q_OBJECT

public:
    explicit FileReportPanel(QWidget* parent);

    /// Shows what came of these files; none: that no file was read.
    void tell(const std::vector<FileRead>& reads);

private:
    QPlainTextEdit* lines_;
};

} // namespace velmora
