#include "FolderDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>

#include "qt_text.h"

namespace velmora {

namespace {

constexpr QSize listSize{360, 240};

QLabel* labelOf(const QString& text, QWidget* control, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setBuddy(control);
    return label;
}

} // namespace

bool isReturn(const QEvent& event) {
    if (event.type() != QEvent::KeyPress) {
        return false;
    }
    const int key = static_cast<const QKeyEvent&>(event).key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

void showDrives(QComboBox& box, const std::vector<std::string>& drives, const std::filesystem::path& place) {
    box.clear();
    qsizetype longest = -1;
    const QString here = qtPath(place) + QLatin1Char('/');
    for (const std::string& drive : drives) {
        const QString path = qtText(drive);
        box.addItem(path);
        const bool holdsPlace = here.startsWith(path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/'));
        if (holdsPlace && path.size() > longest) {
            longest = path.size();
            box.setCurrentIndex(box.count() - 1);
        }
    }
}

FolderDialog::FolderDialog(dlgFolder& chooser, QWidget* parent)
    : QDialog(parent), chooser_(chooser), path_(new QLineEdit(this)), folders_(new QListWidget(this)),
      drives_(new QComboBox(this)) {
    setObjectName(QStringLiteral("dlgFolder"));
    setWindowTitle(QString::fromLatin1(dlgFolder::title));
    path_->setObjectName(QStringLiteral("path"));
    path_->setAccessibleName(tr("Current path"));
    path_->setToolTip(tr("The folder; one that is not there is made"));
    folders_->setObjectName(QStringLiteral("folders"));
    folders_->setAccessibleName(tr("Folders"));
    folders_->setMinimumSize(listSize);
    drives_->setObjectName(QStringLiteral("drives"));
    drives_->setAccessibleName(tr("Drives"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &FolderDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &FolderDialog::reject);
    connect(path_, &QLineEdit::editingFinished, this, [this] { takeTyped(); });
    connect(folders_, &QListWidget::itemDoubleClicked, this, &FolderDialog::enterLine);
    folders_->installEventFilter(this);
    connect(drives_, &QComboBox::textActivated, this, [this](const QString& drive) {
        chooser_.changeDrive(plainBytes(drive));
        showPlace();
    });

    auto* grid = new QGridLayout(this);
    grid->addWidget(labelOf(tr("Current &path"), path_, this), 0, 0);
    grid->addWidget(path_, 0, 1);
    grid->addWidget(labelOf(tr("&Folders"), folders_, this), 1, 0, Qt::AlignTop);
    grid->addWidget(folders_, 1, 1);
    grid->addWidget(labelOf(tr("D&rives"), drives_, this), 2, 0);
    grid->addWidget(drives_, 2, 1);
    grid->addWidget(buttons, 3, 0, 1, 2);
    showPlace();
    folders_->setFocus();
}

FolderDialog::~FolderDialog() {
    // A field that loses the focus as the window goes away has nobody left to tell.
    path_->disconnect(this);
}

/// True when nothing was typed that could not be entered.
bool FolderDialog::takeTyped() {
    const QString typed = path_->text();
    if (typed == qtPath(chooser_.folder())) {
        return true;
    }
    // The box of a refusal takes the focus: the field must not be taken a second time.
    path_->setText(qtPath(chooser_.folder()));
    const bool entered = chooser_.typePath(plainBytes(typed));
    showPlace();
    return entered;
}

void FolderDialog::enterLine() {
    const QList<QListWidgetItem*> chosen = folders_->selectedItems();
    if (!chosen.isEmpty()) {
        chooser_.chooseLine(plainBytes(chosen.front()->text()));
        showPlace();
    }
}

/// Return in the list goes into the folder, as a double click does, and not to OK.
bool FolderDialog::eventFilter(QObject* watched, QEvent* event) {
    if (watched == folders_ && isReturn(*event)) {
        enterLine();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void FolderDialog::accept() {
    if (takeTyped()) {
        QDialog::accept();
    }
}

void FolderDialog::showPlace() {
    path_->setText(qtPath(chooser_.folder()));
    folders_->clear();
    for (const std::string& line : chooser_.folderLines()) {
        folders_->addItem(qtText(line));
    }
    showDrives(*drives_, chooser_.drives(), chooser_.folder());
}

} // namespace velmora
