#include "act_lines.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "parse_number.h"
#include "print_values.h"

namespace velmora {

namespace {

struct NamedCapture {
    std::vector<std::string> words;
    Act::Kind kind;
    /// Where the numbers behind the word go.
    std::vector<std::int32_t Act::*> numbers;
};

const std::vector<NamedCapture>& namedCaptures() {
    // Those of two words stand first: the first one that fits is taken.
    static const std::vector<NamedCapture> captures = {
        {{"point"}, Act::Kind::Point, {&Act::patch, &Act::section, &Act::point}},
        {{"node"}, Act::Kind::Node, {&Act::patch, &Act::point}},
        {{"section"}, Act::Kind::Section, {&Act::patch, &Act::section}},
        {{"line"}, Act::Kind::Line, {&Act::patch, &Act::point}},
        {{"patch"}, Act::Kind::WholePatch, {&Act::patch}},
        {{"beside"}, Act::Kind::Beside, {&Act::patch, &Act::section, &Act::point}},
        {{"under", "section"}, Act::Kind::UnderSection, {&Act::patch, &Act::section}},
        {{"under", "line"}, Act::Kind::UnderLine, {&Act::patch, &Act::point}},
        {{"under"}, Act::Kind::Under, {&Act::patch, &Act::section, &Act::point}},
    };
    return captures;
}

const char* remedyForNotArmed(Act::Kind kind) {
    switch (kind) {
    case Act::Kind::Point:
    case Act::Kind::Node:
    case Act::Kind::Under:
        return "run point.capture or point.free before it; points are of patches, nodes of zones";
    case Act::Kind::Section:
    case Act::Kind::UnderSection:
        return "run line.captureSection before it";
    case Act::Kind::Line:
    case Act::Kind::UnderLine:
        return "run line.captureLine before it";
    case Act::Kind::WholePatch:
        return "run patch.capture, patch.addToBlock or patch.removeFromBlock before it";
    case Act::Kind::Beside:
    case Act::Kind::Drag:
    case Act::Kind::Release:
        break;
    }
    return "run point.drag or point.dragAndCorrect before it";
}

} // namespace

std::optional<Act> parseCapture(std::span<const std::string> words) {
    const auto& captures = namedCaptures();
    const auto found = std::find_if(captures.begin(), captures.end(), [&](const NamedCapture& each) {
        return words.size() == each.words.size() + each.numbers.size() &&
               std::equal(each.words.begin(), each.words.end(), words.begin());
    });
    if (found == captures.end()) {
        return std::nullopt;
    }
    Act act;
    act.kind = found->kind;
    for (std::size_t i = 0; i < found->numbers.size(); ++i) {
        const bool mayBeNone = act.kind == Act::Kind::Beside || act.kind == Act::Kind::Under ||
                               (act.kind == Act::Kind::UnderSection && i > 0);
        const std::int32_t least = mayBeNone ? 0 : 1; // 0 for none
        const auto number =
            parseInteger(words[found->words.size() + i], least, std::numeric_limits<std::int32_t>::max());
        if (!number) {
            return std::nullopt;
        }
        act.*found->numbers[i] = *number - 1;
    }
    return act;
}

std::optional<Act> parseDrag(std::span<const std::string> words) {
    const auto place = parseReals(words, 3);
    if (!place) {
        return std::nullopt;
    }
    Act act;
    act.kind = Act::Kind::Drag;
    act.place = {(*place)[0], (*place)[1], (*place)[2]};
    return act;
}

MaybeFailure actFailure(VelmoraView::ActResult result, const Act& act, const std::string& line) {
    using Result = VelmoraView::ActResult;
    switch (result) {
    case Result::Done:
        return std::nullopt;
    case Result::NotArmed:
        return ScriptFailure{"nothing waits for " + inQuotes(line), remedyForNotArmed(act.kind)};
    case Result::NotThere:
        return ScriptFailure{"the model has nothing of the number in " + inQuotes(line),
                             "print state tells its patches, zones and their counts"};
    case Result::NotLetThrough:
        return ScriptFailure{inQuotes(line) + " is outside of what is captured",
                             "take a part of it, or leave that regime before"};
    case Result::NoPlane:
        break;
    }
    return ScriptFailure{inQuotes(line) + " needs a principal view",
                         "run view.frontView, view.upView or view.sideView before it"};
}

} // namespace velmora
