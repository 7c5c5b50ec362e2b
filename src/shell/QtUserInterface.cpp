#include "QtUserInterface.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QTimer>
#include <QTreeView>
#include <algorithm>
#include <utility>

#include "FormDialog.h"
#include "RecentFiles.h"
#include "RegularInputDialog.h"
#include "StatusLine.h"
#include "commands/load_files.h"
#include "messages.h"
#include "qt_text.h"
#include "run_dialog.h"

namespace velmora {

// ---- Types of a chooser ---------------------------------------------------------------------------------------------

ChooserFilters chooserFilters(const FileRequest& request) {
    ChooserFilters filters;
    QStringList all;
    for (const FileType& type : request.types) {
        const QString pattern = QStringLiteral("*.") + qtText(type.extension);
        all.append(pattern);
        filters.texts.append(QStringLiteral("%1 Files (%2)").arg(qtText(type.typeName), pattern));
        filters.patterns.append(pattern);
        filters.extensions.append(qtText(type.extension));
    }
    if (request.types.size() > 1 && !choosesFileToWrite(request.mode)) {
        filters.texts.prepend(QStringLiteral("Available Files (%1)").arg(all.join(QLatin1Char(';'))));
        filters.patterns.prepend(all.join(QLatin1Char(' ')));
        filters.extensions.prepend(QString());
    }
    return filters;
}

int firstFilter(const ChooserFilters& filters, const FileRequest& request, const QString& usedLast) {
    const auto used = filters.texts.indexOf(usedLast);
    if (used >= 0) {
        return static_cast<int>(used);
    }
    const QString extension = qtPath(request.proposed.extension()).mid(1).toLower();
    const auto fitting = extension.isEmpty() ? -1 : filters.extensions.indexOf(extension);
    return static_cast<int>(std::max<qsizetype>(fitting, 0));
}

namespace {

/// The toolkit splits the patterns from the text at the last parenthesis and shows the text alone.
QStringList toolkitFilters(const ChooserFilters& filters) {
    QStringList entries;
    for (int i = 0; i < filters.texts.size(); ++i) {
        entries.append(QStringLiteral("%1 (%2)").arg(filters.texts.at(i), filters.patterns.at(i)));
    }
    return entries;
}

int filterIndex(const ChooserFilters& filters, const QString& entry) {
    for (int i = 0; i < filters.texts.size(); ++i) {
        if (entry.startsWith(filters.texts.at(i))) {
            return i;
        }
    }
    return 0;
}

/// A name to write is the user's to change; one to read is of use only when there is such a file, of a type that is
/// asked for. A name without a folder means the one that the chooser stands in.
bool fits(const FileRequest& request, const std::filesystem::path& folder) {
    if (choosesFileToWrite(request.mode)) {
        return true;
    }
    std::error_code error;
    const std::string extension = plainBytes(qtPath(request.proposed.extension()).mid(1).toLower());
    return std::any_of(request.types.begin(), request.types.end(),
                       [&](const FileType& type) { return type.extension == extension; }) &&
           std::filesystem::is_regular_file(folder / request.proposed, error);
}

void propose(QFileDialog& dialog, const FileRequest& request) {
    const std::filesystem::path folder = request.proposed.parent_path();
    if (!folder.empty()) {
        dialog.setDirectory(qtPath(folder));
    }
    if (!request.proposed.empty() && fits(request, filePath(dialog.directory().absolutePath()))) {
        dialog.selectFile(qtPath(request.proposed.stem()));
    }
}

/// Room for each column of the toolkit's list; the names take what is left, and are never cut short by the others. A
/// chooser of the desktop has columns of its own.
void giveColumnsRoom(QFileDialog& dialog) {
    constexpr QSize roomySize{860, 520};
    auto* list = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
    if (list == nullptr) {
        return;
    }
    QHeaderView& header = *list->header();
    header.setStretchLastSection(false);
    header.setSectionResizeMode(QHeaderView::ResizeToContents);
    header.setSectionResizeMode(0, QHeaderView::Stretch);
    if (auto* places = dialog.findChild<QListView*>(QStringLiteral("sidebar"))) {
        constexpr int widestPlaces = 240;
        const int frame = 2 * places->frameWidth() + places->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
        places->setMinimumWidth(std::min(places->sizeHintForColumn(0) + frame, widestPlaces));
    }
    dialog.resize(dialog.size().expandedTo(roomySize).boundedTo(dialog.screen()->availableSize()));
}

void setModes(QFileDialog& dialog, const FileRequest& request) {
    if (choosesFileToWrite(request.mode)) {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
    } else {
        dialog.setFileMode(request.multiple ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    }
}

} // namespace

// ---- Boxes ----------------------------------------------------------------------------------------------------------

class QtUserInterface::Turn {
public:
    explicit Turn(const QtUserInterface& ui) : busy_(ui.busyDepth_ > 0) {
        if (busy_) {
            QApplication::restoreOverrideCursor();
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() {
        if (busy_) {
            QApplication::setOverrideCursor(Qt::WaitCursor);
        }
    }

private:
    bool busy_;
};

QtUserInterface::QtUserInterface(QMainWindow& frame, StatusLine& status, RecentFiles& recent)
    : frame_(frame), status_(status), recent_(recent) {}

QtUserInterface::~QtUserInterface() = default;

QWidget* QtUserInterface::parentOfBoxes() const {
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : &frame_;
}

void QtUserInterface::showMessage(const Message& message) {
    if (holding_) {
        held_.push_back(message.text);
        return;
    }
    const std::string reason = std::exchange(loss_, {});
    showBox(message.text, message.severity == Severity::NoModel ? reason : std::string());
}

void QtUserInterface::showBox(const std::string& text, const std::string& reason) {
    const Turn turn(*this);
    QMessageBox box(QMessageBox::Information, QStringLiteral("Velmora"), qtText(text), QMessageBox::Ok,
                    parentOfBoxes());
    box.setObjectName(QStringLiteral("messageBox"));
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(qtText(reason));
    for (QLabel* const label : box.findChildren<QLabel*>()) {
        label->setTextFormat(Qt::PlainText); // of the reason, too: a file may be named as a tag is
    }
    box.exec();
}

void QtUserInterface::holdMessages(bool hold) {
    holding_ = hold;
    if (!hold && !held_.empty()) {
        QTimer::singleShot(0, &frame_, [this] { showHeldMessages(); });
    }
}

void QtUserInterface::showHeldMessages() {
    for (const std::string& text : std::exchange(held_, {})) {
        showBox(text);
    }
}

namespace {

/// A box with Yes and No. Escape and the box's own closing say No, or nothing at all where that is an answer too.
class QuestionBox : public QMessageBox {
public:
    QuestionBox(const QString& text, bool mayStay, QWidget* parent)
        : QMessageBox(Question, QStringLiteral("Velmora"), text, Yes | No, parent), mayStay_(mayStay) {
        setObjectName(QStringLiteral("questionBox"));
        setTextFormat(Qt::PlainText);
        setDefaultButton(Yes);
        setEscapeButton(No);
    }

    Answer answer() {
        exec();
        return clickedButton() == button(Yes) ? Answer::Yes : clickedButton() == button(No) ? Answer::No : Answer::None;
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (mayStay_ && event->matches(QKeySequence::Cancel)) {
            done(NoButton);
        } else {
            QMessageBox::keyPressEvent(event);
        }
    }
    void closeEvent(QCloseEvent* event) override {
        if (mayStay_) {
            // The box itself would take it for its escape button.
            QDialog::closeEvent(event); // NOLINT(bugprone-parent-virtual-call)
        } else {
            QMessageBox::closeEvent(event);
        }
    }

private:
    bool mayStay_;
};

} // namespace

bool QtUserInterface::warn(const Message& message) {
    if (holding_) {
        showMessage(message);
        return true;
    }
    return ask(message.text + ". Overwrite the file?");
}

bool QtUserInterface::ask(const std::string& text) {
    const Turn turn(*this);
    return QuestionBox(qtText(text), false, parentOfBoxes()).answer() == Answer::Yes;
}

Answer QtUserInterface::askOrNone(const std::string& text) {
    const Turn turn(*this);
    return QuestionBox(qtText(text), true, parentOfBoxes()).answer();
}

bool QtUserInterface::showDialog(DialogForm& form) {
    const Turn turn(*this);
    FormDialog dialog(form, parentOfBoxes());
    return runDialog(dialog);
}

bool QtUserInterface::showRegularInput(CRegularInput& table) {
    const Turn turn(*this);
    RegularInputDialog dialog(table, parentOfBoxes());
    return runDialog(dialog);
}

/// A name with an extension that is none of those offered gets the chosen one behind it: nothing would be written
/// otherwise. False when a file of the new name is not to be replaced.
bool QtUserInterface::completeName(QString& file, const ChooserFilters& filters, int chosen) {
    const QString extension = filters.extensions.value(chosen);
    if (extension.isEmpty() || filters.extensions.contains(QFileInfo(file).suffix().toLower())) {
        return true;
    }
    file += QLatin1Char('.') + extension;
    return !QFileInfo::exists(file) ||
           ask(plainBytes(QFileDialog::tr("%1 already exists.\nDo you want to replace it?").arg(file)));
}

std::vector<std::filesystem::path> QtUserInterface::chooseFiles(const FileRequest& request) {
    const Turn turn(*this);
    loss_.clear();
    const ChooserFilters filters = chooserFilters(request);
    QString& usedLast = filterUsedLast_[request.command];
    QFileDialog dialog(parentOfBoxes(), QString::fromLatin1(captionOf(request.mode)));
    dialog.setObjectName(QStringLiteral("fileChooser"));
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    setModes(dialog, request);
    const QStringList entries = toolkitFilters(filters);
    dialog.setNameFilters(entries);
    int chosen = firstFilter(filters, request, usedLast);
    const auto takeFilter = [&](const QString& entry) {
        chosen = filterIndex(filters, entry);
        // The proposed name comes without its extension; on the entry of all types its own goes behind it.
        const QString extension = filters.extensions.value(chosen);
        dialog.setDefaultSuffix(extension.isEmpty() ? qtPath(request.proposed.extension()).mid(1) : extension);
    };
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, takeFilter);
    if (!entries.isEmpty()) {
        dialog.selectNameFilter(entries.at(chosen));
        takeFilter(entries.at(chosen));
    }
    propose(dialog, request);
    giveColumnsRoom(dialog);
    if (!runDialog(dialog)) {
        return {};
    }
    usedLast = filters.texts.value(chosen);
    QStringList files = dialog.selectedFiles();
    files.removeDuplicates();
    if (choosesFileToWrite(request.mode) && !completeName(files.front(), filters, chosen)) {
        return {};
    }
    std::vector<std::filesystem::path> paths;
    std::transform(files.cbegin(), files.cend(), std::back_inserter(paths), filePath);
    return paths;
}

// ---- Status, title, busy ------------------------------------------------------------------------

void QtUserInterface::showStatus(const std::string& text) {
    status_.showText(qtText(text));
}

void QtUserInterface::showTitle(const std::string& title) {
    frame_.setWindowTitle(qtText(title) + QStringLiteral("[*] - Velmora"));
}

void QtUserInterface::setBusy(bool busy) {
    busyDepth_ += busy ? 1 : -1;
    if (busy && busyDepth_ == 1) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        busyFor_.start();
        lookedAt_.invalidate();
    }
    if (!busy && busyDepth_ == 0) {
        QApplication::restoreOverrideCursor();
        if (status_.showsProgress() || lookedAt_.isValid()) {
            // What was typed and clicked behind the last look would act on what the work left.
            lookForStop();
            stopKey_.makeUpForPaints();
            longWorkEnded_.start();
        }
        status_.hideProgress();
    }
}

bool QtUserInterface::mayBeMeantForWork() const {
    constexpr qint64 slowHand = 1500; // ms
    return longWorkEnded_.isValid() && longWorkEnded_.elapsed() < slowHand;
}

bool QtUserInterface::lookForStop() {
    lookedAt_.start();
    return stopKey_.wasPressed(&status_.cancelButton(), frame_.centralWidget());
}

void QtUserInterface::nameWork(const QString& work) {
    status_.nameWork(work);
}

// Work that ends soon is left alone.
bool QtUserInterface::isLongAtWork() const {
    constexpr qint64 patience = 500; // ms
    return busyDepth_ > 0 && busyFor_.elapsed() > patience;
}

void QtUserInterface::showProgress(double fraction) {
    if (isLongAtWork()) {
        status_.showProgress(fraction);
    }
}

bool QtUserInterface::wantsToStop() {
    // Often enough for the hand, and seldom enough to cost nothing.
    constexpr qint64 interval = 30; // ms
    return isLongAtWork() && (!lookedAt_.isValid() || lookedAt_.elapsed() >= interval) && lookForStop();
}

void QtUserInterface::addRecentFile(const std::filesystem::path& path) {
    loss_.clear();
    recent_.add(qtPath(path));
}

void QtUserInterface::tellFileRead(const FileRead& read) {
    loss_ = lossText(read);
}

} // namespace velmora
