#include "table_actions.h"

#include <span>
#include <vector>

#include "parse_number.h"
#include "script_line.h"

namespace velmora {

namespace {

using Words = std::span<const std::string>;

constexpr std::int32_t largestNumber = 100000;

const char* const actionsRemedy =
    "give inputAfter, replace, cut, copy, paste on, paste off, newPatch, newLine, find or "
    "select, with their numbers";

struct NamedAction {
    const char* name;
    CRegularInput::Action action;
    bool takesPoint;
};

constexpr NamedAction namedActions[] = {
    {"inputAfter", CRegularInput::InputAfter, true},
    {"replace", CRegularInput::Replace, true},
    {"cut", CRegularInput::Cut, false},
    {"copy", CRegularInput::Copy, false},
    {"newPatch", CRegularInput::NewPatch, true},
    {"newLine", CRegularInput::NewLine, true},
};

ScriptFailure wrongNumbers(const std::string& action, const char* numbers) {
    return {"the action " + inQuotes(action) + " takes " + numbers, actionsRemedy};
}

/// The point typed for an action; none when it is missing or is no number.
std::optional<zVec<double>> typedPoint(Words words) {
    if (words.size() != 3) {
        return std::nullopt;
    }
    const auto x = parseReal(words[0]);
    const auto y = parseReal(words[1]);
    const auto z = parseReal(words[2]);
    return x && y && z ? std::optional(zVec<double>(*x, *y, *z)) : std::nullopt;
}

MaybeFailure act(CRegularInput& table, const NamedAction& named, Words words) {
    const bool takesPoint = named.takesPoint && !table.pasteChecked;
    const auto point = typedPoint(words);
    if (takesPoint ? !point : !words.empty()) {
        return wrongNumbers(named.name, takesPoint ? "three numbers" : "no numbers here");
    }
    if (!table.chooseAction(named.action)) {
        return ScriptFailure{"the action " + inQuotes(named.name) + " is off", "see which points the table holds"};
    }
    if (takesPoint) {
        table.typed = *point;
    }
    table.act([](CRegularFind&) { return false; });
    return std::nullopt;
}

MaybeFailure findPoint(CRegularInput& table, Words words) {
    const std::vector<std::string> numbers(words.begin(), words.end());
    if (numbers.size() != 3) {
        return wrongNumbers("find", "three whole numbers");
    }
    if (!table.chooseAction(CRegularInput::Find)) {
        return ScriptFailure{"the action \"find\" is off", "give points first, and turn paste off"};
    }
    bool whole = true;
    table.act([&](CRegularFind& find) {
        DialogForm form = describe(find, &table.regularPatches);
        openDialog(form);
        whole =
            !setField(form, "K", numbers[0]) && !setField(form, "N", numbers[1]) && !setField(form, "M", numbers[2]);
        return whole;
    });
    return whole ? MaybeFailure() : wrongNumbers("find", "three whole numbers");
}

} // namespace

MaybeFailure performTableAction(CRegularInput& table, std::string_view action) {
    const std::vector<std::string> words = splitLine(action).words;
    if (words.empty()) {
        return ScriptFailure{"the action is empty", actionsRemedy};
    }
    const Words numbers = Words(words).subspan(1);
    for (const NamedAction& named : namedActions) {
        if (words[0] == named.name) {
            return act(table, named, numbers);
        }
    }
    if (words[0] == "paste" && numbers.size() == 1 && (numbers[0] == "on" || numbers[0] == "off")) {
        table.checkPaste(numbers[0] == "on");
        return std::nullopt;
    }
    if (words[0] == "find") {
        return findPoint(table, numbers);
    }
    if (words[0] == "select" && numbers.size() == 1) {
        const auto row = parseInteger(numbers[0], 1, largestNumber);
        return row && table.select(*row)
                   ? MaybeFailure()
                   : ScriptFailure{"the table has no row " + inQuotes(numbers[0]), "select a row that it shows"};
    }
    return ScriptFailure{"there is no action " + inQuotes(action), actionsRemedy};
}

} // namespace velmora
