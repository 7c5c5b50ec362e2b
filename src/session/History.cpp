#include "History.h"

#include <new>
#include <utility>

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

bool History::goTo(std::size_t line, VelmoraDoc& document, VelmoraView& view, Journal& journal) const {
    const Step* step = row_.at(line);
    if (step == nullptr) {
        return false;
    }
    step->document.putBack(document);
    if (step->written != written_ && !document.holdsNothing()) {
        document.documentModified = true; // the file holds another state of the model
    }
    view.forceMouseMode(step->mode);
    journal.goTo(line, step->tracking);
    return true;
}

} // namespace velmora
