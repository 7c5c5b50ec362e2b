#pragma once

#include <QObject>
#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

#include "PatchList.h"
#include "ShellCommands.h"

class QDockWidget;
class QMainWindow;

namespace velmora {

class CurvePlotPanel;
class FileReportPanel;
class JournalPanel;
class QtUserInterface;
class ReportPanel;
class Session;

/// The panels beside the view: report, plot, journal and what came of files. What is shown is brought up to date after
/// each command.
class Panels : public QObject {
    Q_OBJECT

public:
    /// All references must outlive the object.
    Panels(QMainWindow& frame, Session& session, QtUserInterface& person);

    /// Shows the panel, or hides it when it is shown.
    void toggle(Panel panel);
    bool shown(Panel panel) const;
    /// Shows what the document holds now.
    void refresh();
    /// Runs a script on the session, and tells where it ended if it did not come to its end. It may leave the program.
    void runScript(const std::filesystem::path& script);

signals:
    /// A panel was shown or hidden, or changed something in the document.
    void changed();
    /// A piece of work that may fail by an exception is to be carried out.
    void workWanted(const std::function<void()>& work);
    /// The program is to end; what there was to ask was asked.
    void leavingWanted();

private:
    QDockWidget& dockOf(Panel panel) const;
    void connectPanels();
    void refreshReport();
    void refreshPlot();
    void showTried(const PointList& curve);
    void capture(std::int32_t patch, std::int32_t section, std::int32_t point);
    void captureOfCurve(std::int32_t point);
    void pointAt(std::int32_t point);
    void goTo(std::size_t lines);
    void copyJournal();
    void saveJournal();
    void chooseScript();
    void saveTable();
    void savePicture();
    std::filesystem::path chooseFile(bool toWrite, const char* extension, const char* typeName, const char* name);

    Session& session_;
    QtUserInterface& person_;
    ReportPanel* report_;
    CurvePlotPanel* plot_;
    JournalPanel* journal_;
    FileReportPanel* fileReport_;
    std::optional<std::uint64_t> reported_; ///< the geometry that the report is of
};

} // namespace velmora
