#include "print_values.h"

namespace velmora {

bool commandIsOn(const Command& command, const VelmoraDoc& doc, const VelmoraView& view) {
    return command.owner == CommandOwner::View ? !view.isViewCommandOff(command.id) : !isCommandOff(doc, command.id);
}

Json commandsValue(const VelmoraDoc& doc, const VelmoraView& view) {
    Json commands = Json::object();
    for (const Command& command : commandTable()) {
        commands[command.id] = commandIsOn(command, doc, view);
    }
    return commands;
}

PrintedValue dialogValue(const std::string& name, VelmoraDoc& doc) {
    if (const auto form = doc.storedDialog(name)) {
        return fieldsValue(*form);
    }
    std::string known;
    for (const std::string& each : VelmoraDoc::dialogNames()) {
        known += ' ' + each;
    }
    return ScriptFailure{"there is no dialog " + inQuotes(name), "print one of:" + known};
}

} // namespace velmora
