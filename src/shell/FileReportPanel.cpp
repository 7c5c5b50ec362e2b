#include "FileReportPanel.h"

#include <QPlainTextEdit>
#include <QShortcut>

#include "file_report.h"
#include "qt_text.h"

namespace velmora {

FileReportPanel::FileReportPanel(QWidget* parent)
    : QDockWidget(tr("File report"), parent), lines_(new QPlainTextEdit(this)) {
    setObjectName(QStringLiteral("fileReport"));
    lines_->setObjectName(QStringLiteral("fileReportLines"));
    lines_->setAccessibleName(windowTitle());
    lines_->setReadOnly(true);
    // The cursor shows where the keyboard is, and lines can be marked by it.
    lines_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setWidget(lines_);
    auto* leave = new QShortcut(Qt::Key_Escape, this);
    leave->setContext(Qt::WidgetWithChildrenShortcut);
    connect(leave, &QShortcut::activated, this, &QWidget::close);
    tell({});
}

void FileReportPanel::tell(const std::vector<FileRead>& reads) {
    QStringList words;
    for (const std::string& line : reportLines(reads)) {
        words.append(qtText(line));
    }
    const QString text = words.isEmpty() ? tr("No file has been read yet.") : words.join(QLatin1Char('\n'));
    // What is marked, and the place in a long text, stay while nothing is new.
    if (text != lines_->toPlainText()) {
        lines_->setPlainText(text);
    }
}

} // namespace velmora
