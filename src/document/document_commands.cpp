#include "document_commands.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

#include "command_rows.h"

namespace velmora {

namespace {

/// The first words of the ids, in the order of the table.
const std::string_view subjects[] = {"file", "patch", "block", "line", "buffer", "point", "model", "convert", "view"};

/// Where the subject of an id stands.
auto subjectOf(const Command& command) {
    const std::string_view id = command.id;
    return std::find(std::begin(subjects), std::end(subjects), id.substr(0, id.find('.')));
}

std::vector<Command> allRows() {
    std::vector<Command> all;
    for (const auto rows :
         {openCommands(),   exchangeCommands(),    referenceCommands(),    markerCommands(),      fieldCommands(),
          saveCommands(),   regimeCommands(),      undoCommands(),         projectionCommands(),  blockCommands(),
          viewCommands(),   joinCommands(),        sectionCommands(),      surfaceCommands(),     rebreakCommands(),
          bufferCommands(), pointCommands(),       pointDragCommands(),    rebreakPartCommands(), transformCommands(),
          knifeCommands(),  markerShiftCommands(), intersectionCommands(), compareCommands(),     distanceCommands(),
          convertCommands()}) {
        all.insert(all.end(), rows.begin(), rows.end());
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const Command& a, const Command& b) { return subjectOf(a) < subjectOf(b); });
    return all;
}

} // namespace

std::span<const Command> documentCommands() {
    static const std::vector<Command> rows = allRows();
    return rows;
}

} // namespace velmora
