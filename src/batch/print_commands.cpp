#include "Session.h"
#include "about.h"
#include "print_values.h"

namespace velmora {

namespace {

/// Counts on with each edition of the scripts' grammar.
constexpr int grammarVersion = 2;

} // namespace

Json versionValue() {
    return {{"program", programVersion()}, {"grammar", grammarVersion}, {"picture", false}};
}

Json commandsValue(const VelmoraDoc& doc, const VelmoraView& view) {
    Json commands = Json::object();
    for (const Command& command : commandTable()) {
        commands[command.id] = isCommandOn(command, doc, view);
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
