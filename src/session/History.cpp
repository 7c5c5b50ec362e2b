#include "History.h"

#include <new>
#include <utility>

#include "Digest.h"
#include "VelmoraDoc.h"
#include "VelmoraView.h"

namespace velmora {

void History::keep(const VelmoraDoc& document, const VelmoraView& view, const Journal& journal) {
    const std::size_t line = journal.lines().size();
    try {
        const Step* before = row_.before(line);
        row_.keep(line, {DocumentSnapshot(document, before != nullptr ? &before->document : nullptr, held_),
                         journal.tracking(), static_cast<MouseMode>(view.mouseMode), written_});
        row_.fitInto(document.freeMemory, [this] { return *held_; });
    } catch (const std::bad_alloc&) {
        row_.clear();
    }
}

void History::noteWritten(const std::filesystem::path& file, const VelmoraDoc& document) {
    WrittenFile& written = files_[file];
    written.number = ++written_;
    const bool isModel = file == document.modelFile.chosenPath && !document.documentModified;
    written.model = isModel ? std::optional(geometryDigest(document.patches, document.feRegion)) : std::nullopt;
}

/// A model whose file was written since stands in it only if it is the one that was written.
void History::judgeModified(VelmoraDoc& document, const Step& step) const {
    const auto file = files_.find(document.modelFile.chosenPath);
    if (file == files_.end() || file->second.number <= step.written || document.holdsNothing()) {
        return;
    }
    document.documentModified = file->second.model != geometryDigest(document.patches, document.feRegion);
}

bool History::goTo(std::size_t line, VelmoraDoc& document, VelmoraView& view, Journal& journal) const {
    const Step* step = row_.at(line);
    if (step == nullptr) {
        return false;
    }
    step->document.putBack(document);
    judgeModified(document, *step);
    view.forceMouseMode(step->mode);
    journal.goTo(line, step->tracking);
    return true;
}

} // namespace velmora
