#include "Panels.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMainWindow>
#include <QPixmap>
#include <utility>

#include "CurvePlotPanel.h"
#include "DialogValues.h"
#include "FileReportPanel.h"
#include "JournalPanel.h"
#include "QtUserInterface.h"
#include "ReportPanel.h"
#include "Session.h"
#include "VelmoraDoc.h"
#include "WindowScript.h"
#include "capture_by_number.h"
#include "captured_curve.h"
#include "messages.h"
#include "qt_text.h"
#include "script_words.h"

namespace velmora {

namespace {

/// Pixels that a panel beside the view gets at least when it comes up.
constexpr int leastWidth = 320;

} // namespace

Panels::Panels(QMainWindow& frame, Session& session, QtUserInterface& person)
    : QObject(&frame), session_(session), person_(person), report_(new ReportPanel(&frame)),
      plot_(new CurvePlotPanel(&frame)), journal_(new JournalPanel(&frame)), fileReport_(new FileReportPanel(&frame)) {
    for (QDockWidget* dock : {static_cast<QDockWidget*>(report_), static_cast<QDockWidget*>(journal_)}) {
        frame.addDockWidget(Qt::RightDockWidgetArea, dock);
        dock->hide();
    }
    for (QDockWidget* dock : {static_cast<QDockWidget*>(plot_), static_cast<QDockWidget*>(fileReport_)}) {
        frame.addDockWidget(Qt::BottomDockWidgetArea, dock);
        dock->hide();
    }
    connectPanels();
    session_.state().dialogs->onCurveTried = [this](const PointList& curve) { showTried(curve); };
}

void Panels::connectPanels() {
    for (const Panel panel : {Panel::Report, Panel::CurvePlot, Panel::Journal, Panel::FileReport}) {
        connect(&dockOf(panel), &QDockWidget::visibilityChanged, this, &Panels::changed);
    }
    connect(report_, &ReportPanel::placeChosen, this, &Panels::capture);
    connect(plot_, &CurvePlotPanel::pointChosen, this, &Panels::captureOfCurve);
    connect(plot_, &CurvePlotPanel::tableWanted, this, &Panels::saveTable);
    connect(plot_, &CurvePlotPanel::pictureWanted, this, &Panels::savePicture);
    connect(&plot_->plot(), &PlotWidget::pointedAt, this, &Panels::pointAt);
    connect(journal_, &JournalPanel::copyWanted, this, &Panels::copyJournal);
    connect(journal_, &JournalPanel::saveWanted, this, &Panels::saveJournal);
    connect(journal_, &JournalPanel::runWanted, this, &Panels::chooseScript);
    connect(journal_, &JournalPanel::stateWanted, this, &Panels::goTo);
}

// ---- Showing --------------------------------------------------------------------------------------------------------

QDockWidget& Panels::dockOf(Panel panel) const {
    switch (panel) {
    case Panel::Report:
        return *report_;
    case Panel::CurvePlot:
        return *plot_;
    case Panel::Journal:
        return *journal_;
    case Panel::FileReport:
        break;
    }
    return *fileReport_;
}

void Panels::toggle(Panel panel) {
    QDockWidget& dock = dockOf(panel);
    const bool comes = dock.isHidden();
    dock.setVisible(comes);
    refresh();
    if (comes && dock.width() < leastWidth && !dock.isFloating()) {
        // The view takes all that it can get; lines of text would be cut.
        static_cast<QMainWindow*>(parent())->resizeDocks({&dock}, {leastWidth}, Qt::Horizontal);
    }
}

bool Panels::shown(Panel panel) const {
    return !dockOf(panel).isHidden();
}

void Panels::refresh() {
    session_.keepUp();
    if (shown(Panel::Report)) {
        refreshReport();
    }
    if (shown(Panel::CurvePlot)) {
        refreshPlot();
    }
    if (shown(Panel::FileReport)) {
        fileReport_->tell(session_.filesRead());
    }
    if (shown(Panel::Journal)) {
        const Journal& journal = session_.journal();
        journal_->showLines(journal.lines(), journal.later(),
                            [this](std::size_t line) { return session_.endOfWork(line); });
    }
}

void Panels::refreshReport() {
    const DocumentState& doc = session_.state();
    if (reported_ != doc.geometryRevision()) {
        const BusyScope busy(person_);
        report_->showLines(reportLines(modelReport(doc.patches, doc.feRegion, doc.modelRadius)));
        reported_ = doc.geometryRevision();
    }
}

void Panels::refreshPlot() {
    DocumentState& doc = session_.state();
    plot_->showCurve(curveInHand(doc), neighbourCurves(doc));
}

/// The curve as it stands goes behind, before its neighbours, until the dialog is closed.
void Panels::showTried(const PointList& curve) {
    if (shown(Panel::CurvePlot)) {
        DocumentState& doc = session_.state();
        std::vector<PointList> behind = neighbourCurves(doc);
        behind.insert(behind.begin(), curveInHand(doc));
        plot_->showCurve(curve, std::move(behind));
    }
}

// ---- Capturing ------------------------------------------------------------------------------------------------------

void Panels::capture(std::int32_t patch, std::int32_t section, std::int32_t point) {
    emit workWanted([=, this] {
        session_.perform([&] {
            if (!capturePointByNumber(session_, patch, section, point)) {
                session_.document().ui().showMessage(message::pointNotCaptured);
            }
        });
    });
    emit changed();
}

/// Of the line buffer nothing is captured: its points are none of the model.
void Panels::captureOfCurve(std::int32_t point) {
    DocumentState& doc = session_.state();
    if (!curveIsThere(doc)) {
        return;
    }
    const CaptureState& held = *doc.capture;
    if (held.sectionCaptured) {
        capture(held.capturedPatch, held.capturedSection, point);
    } else {
        capture(held.capturedPatch, point, held.capturedLine);
    }
}

void Panels::pointAt(std::int32_t point) {
    const auto& points = plot_->curve();
    const auto i = static_cast<std::size_t>(point);
    session_.view().pointAt(point >= 0 && i < points.size() ? std::optional(points[i]) : std::nullopt);
}

// ---- Back and forth -------------------------------------------------------------------------------------------------

void Panels::goTo(std::size_t lines) {
    session_.keepUp();
    const auto end = session_.endOfWork(lines);
    bool gone = false;
    if (end && *end != session_.journal().lines().size()) {
        emit workWanted([&] { gone = session_.goTo(*end); });
    }
    if (!end || (!gone && *end != session_.journal().lines().size())) {
        session_.document().ShowStatus(message::stateNotKept);
    }
    emit changed();
}

// ---- Files ----------------------------------------------------------------------------------------------------------

/// Empty when the chooser was cancelled, and for the file of a model, which is not written over.
std::filesystem::path Panels::chooseFile(bool toWrite, const char* extension, const char* typeName, const char* name) {
    FileRequest request;
    request.mode = toWrite ? ChooserMode::SaveAs : ChooserMode::Open;
    request.types = {{extension, typeName}};
    request.proposed = session_.state().modelFile.chosenPath.parent_path() / name;
    request.command = std::string("options.") + extension;
    const auto paths = person_.chooseFiles(request);
    if (paths.empty()) {
        return {};
    }
    if (toWrite && session_.holdsModel(paths.front())) {
        person_.showMessage(message::holdsModel(paths.front().filename().string()));
        return {};
    }
    return paths.front();
}

/// The lines that were picked out, else all that are seen.
void Panels::copyJournal() {
    const Journal& journal = session_.journal();
    std::vector<std::string> lines = journal_->pickedLines();
    if (lines.empty()) {
        lines = journal.later().empty() ? session_.script() : journal.lines();
        lines.insert(lines.end(), journal.later().begin(), journal.later().end());
    }
    QString text;
    for (const std::string& line : lines) {
        text += qtText(line) + QLatin1Char('\n');
    }
    QGuiApplication::clipboard()->setText(text);
}

void Panels::saveJournal() {
    const auto path = chooseFile(true, "script", "Script", "journal.script");
    if (!path.empty() && !writeScript(path, session_.script())) {
        person_.showMessage(message::cannotSave);
    }
}

void Panels::chooseScript() {
    const auto path = chooseFile(false, "script", "Script", "");
    if (!path.empty()) {
        runScript(path);
    }
}

void Panels::runScript(const std::filesystem::path& script) {
    WindowScriptEnd end;
    emit workWanted([&] { end = runWindowScript(session_, person_, script); });
    emit changed();
    if (end.leaves) {
        emit leavingWanted();
    } else if (end.stop && end.stop->number == 0) {
        person_.showMessage(message::scriptNotRead(script.string()));
    } else if (end.stop) {
        person_.showMessage(message::scriptStopped(end.stop->number, end.stop->line, end.stop->cause));
    }
}

void Panels::saveTable() {
    const auto path = chooseFile(true, "csv", "Table", "curve.csv");
    if (!path.empty() && !writeText(path, curveTable(curveValues(plot_->curve())))) {
        person_.showMessage(message::cannotSave);
    }
}

void Panels::savePicture() {
    const auto path = chooseFile(true, "png", "Picture", "curve.png");
    if (!path.empty() && !plot_->plot().grab().save(qtPath(path))) {
        person_.showMessage(message::cannotSave);
    }
}

} // namespace velmora
