#include "command_help.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "BatchUserInterface.h"
#include "DialogValues.h"
#include "DocumentState.h"

namespace velmora {

namespace {

constexpr std::string_view pointTable = "CRegularInput";

constexpr std::pair<std::string_view, std::string_view> dialogs[] = {
    {"file.new", pointTable},
    {"file.import", "CImport"},
    {"file.export", "CExport"},
    {"patch.inputAndAdd", "CInputPatch"},
    {"block.extrapolate", "CExtrapolation"},
    {"block.merge", "CMerge"},
    {"line.inputSection", "CInputSection"},
    {"line.inputLine", "CInputLine"},
    {"line.scaling", "CScaling"},
    {"line.move", "CBlockMove"},
    {"line.flip", "CFlipBlock"},
    {"line.symmetric", "CSymmetricBlock"},
    {"line.rotation", "CBlockRotate"},
    {"line.firstPoint", "CFirstPoint"},
    {"line.interpolate", "CInterpolate"},
    {"line.rebreak", "CRebreak"},
    {"line.prescribe", "CPrescribe"},
    {"line.duplicate", "Cduplicate"},
    {"line.knife", "CBeforeAfter"},
    {"line.correct", "CCorrectLine"},
    {"point.input", "CRegularFind"},
    {"point.edit", "dlgEditPoint"},
    {"point.duplicate", "Cduplicate"},
    {"point.rebreakPart", "CRebreakPart"},
    {"point.knifePart", "CBeforeAfter"},
    {"point.copyPart", "CBeforeAfter"},
    {"point.pastePart", "CBeforeAfter"},
    {"model.scaling", "CScaling"},
    {"model.move", "CBlockMove"},
    {"model.rotation", "CBlockRotate"},
    {"model.flip", "CFlipBlock"},
    {"model.symmetric", "CSymmetricBlock"},
    {"model.lastFirstSwitch", "CLast_First_switch"},
    {"model.knife", "CBeforeAfter"},
    {"model.intersection", "CIntersection"},
    {"model.smooth", "CSmooth"},
    {"model.compare", "CCompare"},
    {"convert.toApt", "CConvert_SKL_to_APT"},
    {"convert.toSkl", "CConvert_to_SKL"},
    {"convert.knife", "CUKnife"},
    {"view.manual", "dlgViewing"},
    {"view.colourByValue", "CColours"},
    {"view.features", "CFeatures"},
    {"file.picture", "CPicture"},
};

const char* nameOf(FieldKind kind) {
    switch (kind) {
    case FieldKind::Integer:
        return "integer";
    case FieldKind::Real:
        return "number";
    case FieldKind::Radio:
        return "choice";
    case FieldKind::Check:
        break;
    }
    return "check";
}

Json limitValue(const DialogField& field, const std::optional<double>& limit) {
    if (!limit) {
        return nullptr;
    }
    return field.kind == FieldKind::Real ? numberValue(*limit) : Json(static_cast<std::int64_t>(*limit));
}

Json fieldHelp(const DialogField& field, const Json& start) {
    return {{"name", field.key},
            {"kind", nameOf(field.kind)},
            {"minimum", limitValue(field, field.minimum)},
            {"maximum", limitValue(field, field.maximum)},
            {"start", start},
            {"choices", field.kind == FieldKind::Radio ? Json(field.choices) : Json(nullptr)},
            {"on", field.on && !field.readOnly}};
}

/// The point table is worked by actions.
Json actionHelp() {
    return {{"name", "do"}, {"kind", "text"},     {"minimum", nullptr}, {"maximum", nullptr},
            {"start", ""},  {"choices", nullptr}, {"on", true}};
}

/// The fields of a parameter dialog in a program that has just begun.
Json fieldsHelp(std::string_view name) {
    std::ostringstream nowhere;
    TextEventPrinter printer(nowhere);
    BatchUserInterface nobody(printer);
    DocumentState document(nobody, {});
    Json fields = Json::array();
    if (auto form = document.dialogs->form(name)) {
        const Json start = fieldsValue(*form);
        openDialog(*form);
        for (const DialogField& field : form->fields) {
            fields.push_back(fieldHelp(field, start.at(field.key)));
        }
    }
    return fields;
}

} // namespace

std::string_view dialogOf(const Command& command) {
    const auto* found = std::find_if(std::begin(dialogs), std::end(dialogs),
                                     [&command](const auto& entry) { return entry.first == command.id; });
    return found == std::end(dialogs) ? std::string_view() : found->second;
}

Json commandHelp(const Command& command) {
    const std::string_view dialog = dialogOf(command);
    return {{"command", command.id},
            {"dialog", dialog.empty() ? Json(nullptr) : Json(dialog)},
            {"fields", dialog == pointTable ? Json::array({actionHelp()}) : fieldsHelp(dialog)}};
}

} // namespace velmora
