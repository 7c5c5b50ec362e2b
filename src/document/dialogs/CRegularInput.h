#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "CRegularFind.h"
#include "PatchList.h"

namespace velmora {

/// The table in which a model is typed in point by point. It works straight on the list it is given and shows one row
/// for each point of the line in hand; a row holds six decimals, and what is read back from it has no more.
class CRegularInput {
public:
    /// What the action button does.
    enum Action : std::int32_t {
        InputAfter = 1,
        Replace = 2,
        Cut = 3,
        Copy = 4,
        NewPatch = 5,
        NewLine = 6,
        Find = 7,
        Ok = 8,
    };
    static constexpr std::int32_t actionCount = 8;

    struct Row {
        std::array<std::string, 3> coordinates; ///< as "%+e" writes them
        std::int32_t K = 0;
        std::int32_t N = 0;
        std::int32_t M = 0;
    };

    explicit CRegularInput(PatchList& list) : regularPatches(list) {}

    zVec<double> typed; ///< fields X, Y, Z
    std::int32_t K = 1; ///< patch, line and point, from 1; M is 0 while there is no point
    std::int32_t N = 1;
    std::int32_t M = 0;
    zVec<double> buffer; ///< fields Buffer X, Y, Z
    bool pasteChecked = false;
    std::int32_t actionRegime = InputAfter;
    std::vector<Row> rows; ///< of line N of patch K; row M - 1 is selected
    PatchList& regularPatches;
    /// What changed the list since the start state, as the actions of a script: points with their numbers, wherever
    /// they came from.
    std::vector<std::string> actions;

    // Which controls are live, as of the last reevaluate().
    std::array<bool, actionCount> actionOn{};
    bool typedOn = true;
    bool bufferOn = false;

    /// The start state, over the list as it is.
    void reset();
    /// Brings regime and live controls in line with check box, regime and model.
    void reevaluate();
    /// Chooses a radio button; false when it is off.
    bool chooseAction(std::int32_t action);
    void checkPaste(bool checked);
    /// Presses the action button. Find needs `openFind`, which shows the dialog and answers true for OK.
    void act(const std::function<bool(CRegularFind&)>& openFind);
    /// Selects a row by its number from 1; false when there is none.
    bool select(std::int32_t row);

    /// "Input after", "Replace", "Cut", "Copy", "New patch", "New line", "Find ", "OK".
    static const char* radioText(std::int32_t action);
    /// What the action button says: the radio's text without the blank behind it.
    static std::string buttonText(std::int32_t action);

private:
    PointList* lineInHand();
    zVec<double> newPoint() const { return pasteChecked ? buffer : typed; }
    void fillRows(std::int32_t k, std::int32_t n, std::int32_t m);
    void addRow(const zVec<double>& point);
    zVec<double> readRow(std::int32_t row) const;
    void inputAfter();
    void replace();
    void cut();
    void startLine();
};

/// The number fields of the table as a form: what is typed goes through the same tests as in every dialog. Its refresh
/// takes over which fields are live.
DialogForm describe(CRegularInput& table);

} // namespace velmora
