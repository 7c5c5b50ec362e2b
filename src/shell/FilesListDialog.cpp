#include "FilesListDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <algorithm>

#include "FolderDialog.h"
#include "qt_text.h"
#include "run_dialog.h"

namespace velmora {

namespace {

constexpr QSize listSize{280, 260};

/// Fills a list; the row that was chosen stays so as long as its line is the same, or with `anyLine` as long as there
/// is one.
void fill(QListWidget& list, const QStringList& lines, bool anyLine) {
    const int row = list.selectedItems().isEmpty() ? -1 : list.currentRow();
    const QString chosen = row >= 0 ? list.currentItem()->text() : QString();
    list.clear();
    list.addItems(lines);
    const int next = std::min(row, list.count() - 1);
    if (next >= 0 && (anyLine || lines.at(next) == chosen)) {
        list.setCurrentRow(next);
    }
}

} // namespace

FilesListDialog::FilesListDialog(dlgFilesList& list, QWidget* parent)
    : QDialog(parent), list_(list), working_(list), name_(new QLineEdit(this)), directory_(new QLineEdit(this)),
      projectPath_(new QLabel(this)), files_(new QListWidget(this)), project_(new QListWidget(this)),
      drives_(new QComboBox(this)) {
    setObjectName(QStringLiteral("dlgFilesList"));
    setWindowTitle(tr("Project list"));
    setStatusTip(QString::fromLatin1(dlgFilesList::statusText));
    makeControls();
    placeControls();
    showList();
    name_->setFocus();
    name_->selectAll();
}

FilesListDialog::~FilesListDialog() {
    // A field that loses the focus as the window goes away has nobody left to tell.
    name_->disconnect(this);
    directory_->disconnect(this);
}

void FilesListDialog::makeControls() {
    const auto name = [](QWidget& control, const char* objectName, const QString& accessibleName) {
        control.setObjectName(QString::fromLatin1(objectName));
        control.setAccessibleName(accessibleName);
    };
    name(*name_, "name", tr("Project name"));
    name(*directory_, "directory", tr("Current directory"));
    name_->setToolTip(tr("The name; a folder before it becomes that of the project"));
    directory_->setToolTip(tr("The folder whose files are listed"));
    name(*projectPath_, "projectPath", tr("Folder of the project"));
    name(*files_, "files", tr("Files and folders"));
    name(*project_, "project", tr("Files of the project"));
    name(*drives_, "drives", tr("Drives"));
    projectPath_->setTextFormat(Qt::PlainText);
    for (QListWidget* list : {files_, project_}) {
        list->setMinimumSize(listSize);
        list->setTextElideMode(Qt::ElideLeft);
        list->installEventFilter(this);
    }
    connect(name_, &QLineEdit::editingFinished, this, &FilesListDialog::takeName);
    connect(directory_, &QLineEdit::editingFinished, this, &FilesListDialog::takeDirectory);
    connect(files_, &QListWidget::itemDoubleClicked, this, &FilesListDialog::addLine);
    connect(project_, &QListWidget::itemDoubleClicked, this, &FilesListDialog::removeLine);
    connect(drives_, &QComboBox::textActivated, this, [this](const QString& drive) {
        working_.changeDrive(plainBytes(drive));
        showList();
    });
}

void FilesListDialog::placeControls() {
    const auto label = [this](const QString& text, QWidget* control) {
        auto* made = new QLabel(text, this);
        made->setBuddy(control);
        return made;
    };
    auto* browseButton = new QPushButton(tr("&Browse..."), this);
    browseButton->setObjectName(QStringLiteral("browse"));
    browseButton->setAutoDefault(false);
    connect(browseButton, &QPushButton::clicked, this, &FilesListDialog::browse);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &FilesListDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &FilesListDialog::reject);

    auto* head = new QGridLayout;
    head->addWidget(label(tr("&Project name"), name_), 0, 0);
    head->addWidget(name_, 0, 1);
    head->addWidget(browseButton, 0, 2);
    head->addWidget(projectPath_, 1, 1, 1, 2);
    head->addWidget(label(tr("Current &Directory"), directory_), 2, 0);
    head->addWidget(directory_, 2, 1, 1, 2);
    auto* lists = new QGridLayout;
    lists->addWidget(label(tr("F&iles/Folders list"), files_), 0, 0);
    lists->addWidget(files_, 1, 0);
    lists->addLayout(makeMoveButtons(), 1, 1);
    lists->addWidget(label(tr("Project &list"), project_), 0, 2);
    lists->addWidget(project_, 1, 2);
    auto* foot = new QHBoxLayout;
    foot->addWidget(label(tr("D&rivers"), drives_));
    foot->addWidget(drives_, 1);
    foot->addWidget(buttons);
    auto* column = new QVBoxLayout(this);
    column->addLayout(head);
    column->addLayout(lists, 1);
    column->addLayout(foot);
}

QLayout* FilesListDialog::makeMoveButtons() {
    auto* column = new QVBoxLayout;
    const auto add = [this, column](const char* name, const QString& text, const QString& help, auto press) {
        auto* button = new QPushButton(text, this);
        button->setObjectName(QString::fromLatin1(name));
        button->setAccessibleName(help);
        button->setToolTip(help);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, press);
        column->addWidget(button);
    };
    const auto changeAll = [this](void (dlgFilesList::*change)()) {
        return [this, change] {
            (working_.*change)();
            showList();
        };
    };
    column->addStretch();
    add("add", QStringLiteral(">"), tr("Add the chosen file"), [this] { addLine(); });
    add("remove", QStringLiteral("<"), tr("Remove the chosen file"), [this] { removeLine(); });
    add("addAll", QStringLiteral(" >>"), tr("Add all files"), changeAll(&dlgFilesList::addAll));
    add("removeAll", QStringLiteral("<<"), tr("Remove all files"), changeAll(&dlgFilesList::removeAll));
    column->addStretch();
    return column;
}

/// Return works as a double click on the left list; on the right one Delete does, so that no file is lost by a Return
/// that was meant for OK.
bool FilesListDialog::eventFilter(QObject* watched, QEvent* event) {
    if (watched == files_ && isReturn(*event)) {
        addLine();
        return true;
    }
    if (watched == project_ && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete) {
        removeLine();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void FilesListDialog::addLine() {
    const QList<QListWidgetItem*> chosen = files_->selectedItems();
    working_.addLine(chosen.isEmpty() ? std::nullopt : std::optional(plainBytes(chosen.front()->text())));
    showList();
}

void FilesListDialog::removeLine() {
    const int row = project_->currentRow();
    const bool chosen = !project_->selectedItems().isEmpty();
    working_.removeLine(chosen ? std::optional(static_cast<std::size_t>(row)) : std::nullopt);
    showList();
}

void FilesListDialog::takeName() {
    const QString typed = name_->text();
    if (typed != qtText(working_.name.text)) {
        // A box takes the focus: the field must not be taken a second time.
        name_->setText(qtText(working_.name.text));
        working_.typeName(plainBytes(typed));
        showList();
    }
}

void FilesListDialog::takeDirectory() {
    if (directory_->text() != qtPath(working_.currentDirectory())) {
        working_.typeDirectory(plainBytes(directory_->text()));
        showList();
    }
}

void FilesListDialog::browse() {
    dlgFolder chooser = working_.browse();
    FolderDialog dialog(chooser, this);
    if (runDialog(dialog)) {
        working_.projectPath = chooser.folder();
        showList();
    }
}

void FilesListDialog::accept() {
    takeName();
    takeDirectory();
    if (working_.accept()) {
        list_ = working_;
        QDialog::accept();
    }
}

void FilesListDialog::showList() {
    name_->setText(qtText(working_.name.text));
    directory_->setText(qtPath(working_.currentDirectory()));
    projectPath_->setText(working_.projectPath.empty() ? tr("No folder chosen") : qtPath(working_.projectPath));
    QStringList files;
    for (const std::string& line : working_.fileLines()) {
        files.append(qtText(line));
    }
    fill(*files_, files, false);
    QStringList chosen;
    for (const std::filesystem::path& path : working_.projectList) {
        chosen.append(qtPath(path));
    }
    fill(*project_, chosen, true);
    showDrives(*drives_, working_.drives(), working_.currentDirectory());
}

} // namespace velmora
