#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>
#include <map>
#include <string>
#include <vector>

#include "StopKey.h"
#include "UserInterface.h"

class QMainWindow;
class QWidget;

namespace velmora {

class RecentFiles;
class StatusLine;

/// The entries of a chooser's list of types, and what each stands for.
struct ChooserFilters {
    QStringList texts;      ///< "Geometry Files (*.apt)"
    QStringList patterns;   ///< "*.apt"
    QStringList extensions; ///< "apt"; empty for the entry of all types
};

/// The entries for a request: one a type, before them one of all types when there are several to read.
ChooserFilters chooserFilters(const FileRequest& request);

/// The entry that a chooser opens on: the one used last, else that of the proposed file's type, else the first.
int firstFilter(const ChooserFilters& filters, const FileRequest& request, const QString& usedLast);

/// The frame's side of what the document says and asks.
class QtUserInterface : public UserInterface {
public:
    /// All must outlive this object.
    QtUserInterface(QMainWindow& frame, StatusLine& status, RecentFiles& recent);
    ~QtUserInterface() override;

    void showMessage(const Message& message) override;
    bool warn(const Message& message) override;
    bool ask(const std::string& text) override;
    Answer askOrNone(const std::string& text) override;
    void showStatus(const std::string& text) override;
    void showTitle(const std::string& title) override;
    bool showDialog(DialogForm& form) override;
    bool showRegularInput(CRegularInput& table) override;
    std::vector<std::filesystem::path> chooseFiles(const FileRequest& request) override;
    bool chooserAsksToOverwrite() const override { return true; }
    void setBusy(bool busy) override;
    void showProgress(double fraction) override;
    bool wantsToStop() override;
    void addRecentFile(const std::filesystem::path& path) override;
    void tellFileRead(const FileRead& read) override;

    /// True in the moment after long work has come to its end: an Esc that comes now was meant to end it.
    bool mayBeMeantForWork() const;
    /// What the status line says of long work; empty: nothing.
    void nameWork(const QString& work);
    /// While messages are held, boxes wait; they come up in their order once the hold ends and the event loop runs.
    void holdMessages(bool hold);

private:
    /// The arrow in place of the wait cursor while the user is asked.
    class Turn;

    bool completeName(QString& file, const ChooserFilters& filters, int chosen);
    void showBox(const std::string& text, const std::string& reason = {});
    void showHeldMessages();
    QWidget* parentOfBoxes() const;
    bool isLongAtWork() const;
    bool lookForStop();

    QMainWindow& frame_;
    StatusLine& status_;
    RecentFiles& recent_;
    int busyDepth_ = 0;
    QElapsedTimer busyFor_;
    QElapsedTimer lookedAt_;
    QElapsedTimer longWorkEnded_;
    StopKey stopKey_;
    bool holding_ = false;
    std::vector<std::string> held_;
    std::string loss_;                              ///< of the file read last, until it is the model or a box told it
    std::map<std::string, QString> filterUsedLast_; ///< text of the entry, by command
};

} // namespace velmora
