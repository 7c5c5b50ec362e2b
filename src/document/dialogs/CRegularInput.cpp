#include "CRegularInput.h"

#include <algorithm>
#include <charconv>

#include "DialogForm.h"

namespace velmora {

namespace {

std::size_t at(std::int32_t fromOne) {
    return static_cast<std::size_t>(fromOne - 1);
}

/// A number as "%+e" writes it in the C locale.
std::string rowText(double value) {
    std::array<char, 64> buffer{};
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific, 6);
    std::string text(buffer.data(), result.ptr);
    return text.front() == '-' ? text : "+" + text;
}

double rowNumber(const std::string& text) {
    const char* first = text.front() == '+' ? text.data() + 1 : text.data();
    double value = 0.0;
    std::from_chars(first, text.data() + text.size(), value);
    return value;
}

std::string numbered(const char* action, const zVec<double>& point) {
    return std::string(action) + ' ' + numberText(point.x) + ' ' + numberText(point.y) + ' ' + numberText(point.z);
}

} // namespace

const char* CRegularInput::radioText(std::int32_t action) {
    static constexpr std::array<const char*, actionCount> texts = {"Input after", "Replace",  "Cut",   "Copy",
                                                                   "New patch",   "New line", "Find ", "OK"};
    return texts[at(action)];
}

std::string CRegularInput::buttonText(std::int32_t action) {
    return action == Find ? "Find" : radioText(action);
}

void CRegularInput::reset() {
    typed = buffer = {};
    K = N = 1;
    M = 0;
    pasteChecked = false;
    actionRegime = InputAfter;
    rows.clear();
    actions.clear();
    reevaluate();
}

void CRegularInput::reevaluate() {
    const bool hasPoint = M != 0;
    if (pasteChecked && actionRegime >= Cut && actionRegime <= Find) {
        actionRegime = InputAfter;
    }
    if (!hasPoint && actionRegime != Find && actionRegime != Ok) {
        actionRegime = InputAfter;
    }
    actionOn.fill(!pasteChecked && hasPoint);
    actionOn[at(InputAfter)] = true;
    actionOn[at(Replace)] = hasPoint;
    actionOn[at(Find)] = !pasteChecked && !regularPatches.empty();
    actionOn[at(Ok)] = true;
    typedOn = !pasteChecked && actionRegime != Cut && actionRegime != Copy && actionRegime != Find;
    bufferOn = pasteChecked;
}

bool CRegularInput::chooseAction(std::int32_t action) {
    if (action < InputAfter || action > Ok || !actionOn[at(action)]) {
        return false;
    }
    actionRegime = action;
    reevaluate();
    return true;
}

void CRegularInput::checkPaste(bool checked) {
    pasteChecked = checked;
    reevaluate();
}

PointList* CRegularInput::lineInHand() {
    if (K < 1 || K > countOf(regularPatches)) {
        return nullptr;
    }
    Patch& patch = regularPatches[at(K)];
    return N < 1 || N > countOf(patch) ? nullptr : &patch[at(N)];
}

void CRegularInput::addRow(const zVec<double>& point) {
    rows.push_back({{rowText(point.x), rowText(point.y), rowText(point.z)}, K, N, countOf(rows) + 1});
}

zVec<double> CRegularInput::readRow(std::int32_t row) const {
    const auto& texts = rows[at(row)].coordinates;
    return {rowNumber(texts[0]), rowNumber(texts[1]), rowNumber(texts[2])};
}

void CRegularInput::fillRows(std::int32_t k, std::int32_t n, std::int32_t m) {
    K = k;
    N = n;
    rows.clear();
    if (const PointList* line = lineInHand()) {
        rows.reserve(line->size());
        for (const zVec<double>& point : *line) {
            addRow(point);
        }
    }
    M = std::min(m, countOf(rows));
    typed = M < 1 ? zVec<double>() : readRow(M);
    M = std::max(M, 0);
}

bool CRegularInput::select(std::int32_t row) {
    if (row < 1 || row > countOf(rows)) {
        return false;
    }
    if (row != M) {
        actions.push_back("select " + std::to_string(row));
        typed = readRow(row);
        M = row;
    }
    reevaluate();
    return true;
}

void CRegularInput::act(const std::function<bool(CRegularFind&)>& openFind) {
    switch (actionRegime) {
    case InputAfter:
        inputAfter();
        break;
    case Replace:
        replace();
        break;
    case Cut:
        cut();
        break;
    case Copy:
        actions.emplace_back("copy");
        buffer = readRow(M);
        break;
    case NewPatch:
        actions.push_back(numbered("newPatch", typed));
        regularPatches.emplace_back();
        K = countOf(regularPatches);
        startLine();
        break;
    case NewLine:
        actions.push_back(numbered("newLine", typed));
        startLine();
        break;
    case Find: {
        CRegularFind find;
        find.K = K;
        find.N = N;
        find.M = M;
        if (openFind(find)) {
            actions.push_back("find " + std::to_string(find.K) + ' ' + std::to_string(find.N) + ' ' +
                              std::to_string(find.M));
            fillRows(find.K, find.N, find.M);
        }
        break;
    }
    default:
        break;
    }
    reevaluate();
}

void CRegularInput::inputAfter() {
    const zVec<double> point = newPoint();
    actions.push_back(numbered("inputAfter", point));
    if (M != countOf(rows)) {
        PointList* line = lineInHand();
        line->insert(line->begin() + M, point);
        fillRows(K, N, M + 1);
        return;
    }
    while (countOf(regularPatches) < K) {
        regularPatches.emplace_back();
    }
    Patch& patch = regularPatches[at(K)];
    while (countOf(patch) < N) {
        patch.emplace_back();
    }
    patch[at(N)].push_back(point);
    typed = point;
    addRow(point);
    M = countOf(rows);
}

void CRegularInput::replace() {
    actions.push_back(numbered("replace", newPoint()));
    (*lineInHand())[at(M)] = newPoint();
    fillRows(K, N, M);
}

void CRegularInput::cut() {
    actions.emplace_back("cut");
    buffer = readRow(M);
    PointList* line = lineInHand();
    line->erase(line->begin() + (M - 1));
    // The point before takes over; of a line that still has points, its first.
    fillRows(K, N, M > 1 ? M - 1 : std::min(countOf(*line), 1));
}

/// A new line behind the last one of patch K, begun with the typed point.
void CRegularInput::startLine() {
    Patch& patch = regularPatches[at(K)];
    patch.push_back({typed});
    N = countOf(patch);
    rows.clear();
    addRow(typed);
    M = 1;
    actionRegime = InputAfter;
}

DialogForm describe(CRegularInput& table) {
    DialogForm form;
    form.name = "CRegularInput";
    form.title = "Regular Input";
    form.fields = {
        realField("X", "X", table.typed.x),
        realField("Y", "Y", table.typed.y),
        realField("Z", "Z", table.typed.z),
        shownOnly(integerField("K", "K", table.K)),
        shownOnly(integerField("N", "N", table.N)),
        shownOnly(integerField("M", "M", table.M)),
        realField("bufferX", "Buffer X", table.buffer.x),
        realField("bufferY", "Buffer Y", table.buffer.y),
        realField("bufferZ", "Buffer Z", table.buffer.z),
    };
    form.refresh = [&table](DialogForm& self, std::string_view) {
        for (const char* key : {"X", "Y", "Z"}) {
            self.find(key)->on = table.typedOn;
        }
        for (const char* key : {"bufferX", "bufferY", "bufferZ"}) {
            self.find(key)->on = table.bufferOn;
        }
    };
    return form;
}

} // namespace velmora
