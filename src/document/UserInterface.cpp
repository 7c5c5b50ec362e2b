#include "UserInterface.h"

#include "WorkCancelled.h"

namespace velmora {

const char* nameOf(Severity severity) {
    switch (severity) {
    case Severity::Info:
        return "info";
    case Severity::Warning:
        return "warning";
    case Severity::Refused:
    case Severity::NoModel:
    case Severity::NotRead:
    case Severity::NotWritten:
        break;
    }
    return "error";
}

const char* captionOf(ChooserMode mode) {
    switch (mode) {
    case ChooserMode::SaveAs:
        return "Save As";
    case ChooserMode::New:
        return "New";
    case ChooserMode::Open:
        return "Open";
    case ChooserMode::Append:
        return "Append";
    case ChooserMode::Import:
        return "Import";
    case ChooserMode::Export:
        return "Export";
    }
    return "";
}

bool choosesFileToWrite(ChooserMode mode) {
    return mode == ChooserMode::SaveAs || mode == ChooserMode::New || mode == ChooserMode::Export;
}

ReportProgress progressTo(UserInterface& ui) {
    return [&ui](double fraction) {
        ui.showProgress(fraction);
        if (ui.wantsToStop()) {
            throw WorkCancelled();
        }
    };
}

} // namespace velmora
