#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velmora {

enum class FieldKind { Integer, Real, Check, Radio };

/// One field of a parameter dialog, bound to a member of the dialog's value object.
struct DialogField {
    std::string key;   ///< the name used by scripts: the member's name
    std::string label; ///< beside the control; of a radio group, its frame's caption, which may be empty
    FieldKind kind = FieldKind::Integer;
    /// int for Integer and Radio (a radio counts its choices from 1), double for Real, bool for Check, and for a Radio
    /// of two choices, of which the second is true.
    std::variant<std::int32_t*, double*, bool*> value;
    /// The closed range that a typed number must keep; none for a field of which no range is tested.
    std::optional<double> minimum;
    std::optional<double> maximum;
    std::vector<std::string> choices; ///< of a radio group, in the order shown
    std::string group;                ///< caption of the frame that the field stands in; empty for none
    bool readOnly = false;            ///< shown, never typed
    bool on = true;                   ///< live: can be changed now
    std::vector<bool> choiceOn;       ///< per choice of a radio group
};

/// Why a dialog stays open: a message for the user (may be empty) and the field that takes the focus.
struct DialogRefusal {
    std::string message;
    std::string key;
};

/// One field as a person set it.
struct FieldChange {
    std::string key;
    std::string text;
    std::string before; ///< what the field held
    bool alone = true;  ///< no other value, and nothing that is live, went with it
};

/// The description of one parameter dialog over a working copy of its values: any front end can show it, set its
/// fields and press OK, and all get the same rules.
struct DialogForm {
    std::string name;  ///< class name of the value object: "CRebreak"
    std::string title; ///< window title
    std::vector<DialogField> fields;
    std::vector<std::string> notices; ///< fixed lines of text under the fields
    bool okOn = true;                 ///< OK can be pressed
    std::string focus;                ///< the field that has the focus on opening; empty: the first that is live
    /// What brings the form from what it showed to what it holds, in this order: what was set to and fro is left out.
    std::vector<FieldChange> changes;

    /// Brings live states and dependent values up to date. Called with an empty key as the dialog opens and with the
    /// field's key after each change of a radio group or check box and after a number was taken.
    std::function<void(DialogForm&, std::string_view key)> refresh;
    /// The dialog's own tests behind OK, after the ranges; a refusal keeps the dialog open.
    std::function<std::optional<DialogRefusal>(DialogForm&)> confirm;
    /// Who shows the form to a person says by it that a field was set; `good` is false while one of them shows what
    /// cannot be taken. Scripts say nothing.
    std::function<void(bool good)> tried;

    /// The field of that name, or null.
    DialogField* find(std::string_view key);
    const DialogField* find(std::string_view key) const;
};

/// Builders for the common fields.
DialogField integerField(std::string key, std::string label, std::int32_t& value, std::optional<double> minimum = {},
                         std::optional<double> maximum = {});
DialogField realField(std::string key, std::string label, double& value, std::optional<double> minimum = {},
                      std::optional<double> maximum = {});
DialogField checkField(std::string key, std::string label, bool& value);
DialogField radioField(std::string key, std::int32_t& value, std::vector<std::string> choices);
DialogField radioField(std::string key, bool& value, std::vector<std::string> choices);
/// The same field, inside the frame `group`.
DialogField inGroup(DialogField field, std::string group);
/// The same field, never editable.
DialogField shownOnly(DialogField field);

/// Runs the opening refresh. A front end calls it once before it shows the form.
void openDialog(DialogForm& form);

/// Sets a field as a person would: parses `text`, tests number and range, stores, refreshes. Nothing changes on a
/// refusal. Refused: no such field, a field or choice that is off or read-only, no number, out of range.
std::optional<DialogRefusal> setField(DialogForm& form, std::string_view key, std::string_view text);

/// Shows by `tried` what would come of a number that is still being typed: good if setField would take it. Values, live
/// states and changes stay as they are.
void tryField(DialogForm& form, std::string_view key, std::string_view text);

/// Presses OK, if it is on: the ranges of all live fields in order, then the dialog's own tests. Empty when the dialog
/// may close.
std::optional<DialogRefusal> acceptDialog(DialogForm& form);

/// A field's value as text: integers and radio choices in decimal, reals with the digits that give the same double
/// back, check boxes as 0 or 1.
std::string fieldText(const DialogField& field);

/// Puts such a text into a field, whether it is on or not; nothing when it is none.
void putFieldText(DialogField& field, std::string_view text);

/// A field's value as a number: of a radio group the choice, of a check box 0 or 1.
double fieldNumber(const DialogField& field);

/// A number as text with the digits that give the same double back.
std::string numberText(double value);

} // namespace velmora
