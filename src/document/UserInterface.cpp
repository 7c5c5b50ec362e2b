#include "UserInterface.h"

namespace velmora {

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
    return [&ui](double fraction) { ui.showProgress(fraction); };
}

} // namespace velmora
