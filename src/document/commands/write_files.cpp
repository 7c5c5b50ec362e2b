#include "write_files.h"

#include <string>
#include <system_error>
#include <vector>

#include "VelmoraDoc.h"
#include "apt.h"
#include "interchange.h"
#include "messages.h"
#include "skl.h"

namespace velmora {

bool mayOverwrite(VelmoraDoc& doc, const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return true;
    }
    return !doc.modelFile.holdsMore(path) || doc.ui().ask(message::holdsMorePoints);
}

bool writeStructured(VelmoraDoc& doc, const std::filesystem::path& path, FileKind kind) {
    const BusyScope busy(doc.ui());
    const bool written = kind == FileKind::Apt ? writeApt(path, doc.patches, outputPrecision, progressTo(doc.ui()))
                                               : writeSkl(path, doc.patches, outputPrecision, progressTo(doc.ui()));
    if (!written) {
        doc.ui().showMessage(message::cannotSave);
        return false;
    }
    doc.modelFile.noteCompleteness(path, true);
    return true;
}

bool writeZones(VelmoraDoc& doc, const std::filesystem::path& path, const zRegion& structured,
                const zRegion_fe& unstructured) {
    std::vector<std::string> told;
    bool written = false;
    {
        const BusyScope busy(doc.ui());
        written = writeGeometry(
            path, outputPrecision, structured, unstructured, [&told](const std::string& text) { told.push_back(text); },
            progressTo(doc.ui()));
    }
    for (const std::string& text : told) {
        doc.ui().showMessage({Severity::NotWritten, text});
    }
    if (written) {
        doc.modelFile.noteCompleteness(path, true);
    }
    return written;
}

} // namespace velmora
