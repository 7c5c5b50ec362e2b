#include "Session.h"
#include "about.h"
#include "print_values.h"

#include "DialogValues.h"
#include "DocumentState.h"

namespace velmora {

namespace {

/// Counts on with each edition of the scripts' grammar.
constexpr int grammarVersion = 2;

} // namespace

Json versionValue(bool picture) {
    return {{"program", programVersion()}, {"grammar", grammarVersion}, {"picture", picture}};
}

Json commandsValue(const DocumentState& doc, const VelmoraView& view) {
    Json commands = Json::object();
    for (const Command& command : commandTable()) {
        commands[command.id] = isCommandOn(command, doc, view);
    }
    return commands;
}

PrintedValue dialogValue(const std::string& name, DocumentState& doc) {
    if (const auto form = doc.dialogs->form(name)) {
        return fieldsValue(*form);
    }
    std::string known;
    for (const std::string& each : DialogValues::names()) {
        known += ' ' + each;
    }
    return ScriptFailure{"there is no dialog " + inQuotes(name), "print one of:" + known};
}

} // namespace velmora
