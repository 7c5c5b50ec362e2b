#include "DialogForm.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>

namespace velmora {

namespace {

/// The whole of `text` as a number, or none. A leading "+" is allowed, as people type it.
template <class Number>
std::optional<Number> parseNumber(std::string_view text) {
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') {
            return std::nullopt;
        }
    }
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

/// A limit as a person writes it: whole numbers without an exponent.
std::string limitText(const DialogField& field, double limit) {
    return field.kind == FieldKind::Integer ? std::to_string(static_cast<std::int64_t>(limit)) : numberText(limit);
}

std::string rangeMessage(const DialogField& field) {
    std::string text = field.kind == FieldKind::Real ? "Please enter a number" : "Please enter an integer";
    if (field.minimum && field.maximum) {
        text += " between " + limitText(field, *field.minimum) + " and " + limitText(field, *field.maximum);
    }
    return text + ".";
}

bool inRange(const DialogField& field, double number) {
    // Written so that a value that is not a number fails a field that has a range.
    return (!field.minimum || number >= *field.minimum) && (!field.maximum || number <= *field.maximum);
}

DialogRefusal refuse(const DialogField& field, std::string message) {
    return {std::move(message), field.key};
}

/// A field without a range takes a number beyond 32 bits as the largest or smallest one.
std::optional<std::int32_t> parseInteger(const DialogField& field, std::string_view text) {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool beyond = error == std::errc::result_out_of_range && !field.minimum && !field.maximum;
    if (end != text.data() + text.size() || (error != std::errc() && !beyond)) {
        return std::nullopt;
    }
    using Limits = std::numeric_limits<std::int32_t>;
    return !beyond ? number : text.front() == '-' ? Limits::min() : Limits::max();
}

std::optional<DialogRefusal> storeNumber(DialogField& field, std::string_view text) {
    if (field.kind == FieldKind::Real) {
        const auto number = parseNumber<double>(text);
        if (!number || !std::isfinite(*number) || !inRange(field, *number)) {
            return refuse(field, rangeMessage(field));
        }
        **std::get_if<double*>(&field.value) = *number;
        return std::nullopt;
    }
    const auto number = parseInteger(field, text);
    if (!number || !inRange(field, *number)) {
        return refuse(field, rangeMessage(field));
    }
    **std::get_if<std::int32_t*>(&field.value) = *number;
    return std::nullopt;
}

std::optional<DialogRefusal> storeChoice(DialogField& field, std::string_view text) {
    const auto number = parseNumber<std::int32_t>(text);
    if (!number || *number < 1 || *number > static_cast<std::int32_t>(field.choices.size())) {
        return refuse(field, "Please choose from 1 to " + std::to_string(field.choices.size()) + ".");
    }
    const auto index = static_cast<std::size_t>(*number - 1);
    if (!field.choiceOn[index]) {
        return refuse(field, "The choice \"" + field.choices[index] + "\" is off.");
    }
    if (auto* const integer = std::get_if<std::int32_t*>(&field.value)) {
        **integer = *number;
    } else {
        **std::get_if<bool*>(&field.value) = *number == 2;
    }
    return std::nullopt;
}

DialogField radioOver(std::string key, decltype(DialogField::value) value, std::vector<std::string> choices) {
    DialogField field;
    field.key = std::move(key);
    field.kind = FieldKind::Radio;
    field.value = value;
    field.choiceOn.assign(choices.size(), true);
    field.choices = std::move(choices);
    return field;
}

/// All that a change of a field can bring about, field by field.
std::vector<std::string> looksOf(const DialogForm& form) {
    std::vector<std::string> looks;
    for (const DialogField& field : form.fields) {
        std::string look = fieldText(field) + (field.on ? " on" : " off");
        for (const bool on : field.choiceOn) {
            look += on ? '1' : '0';
        }
        looks.push_back(std::move(look));
    }
    return looks;
}

/// Takes a change into the list. One that comes again before any that went further replaces the one before.
void addChange(DialogForm& form, FieldChange change) {
    auto before = form.changes.end();
    while (change.alone && before != form.changes.begin() && std::prev(before)->alone) {
        --before;
        if (before->key == change.key) {
            change.before = before->before;
            form.changes.erase(before);
            break;
        }
    }
    if (!change.alone || change.text != change.before) {
        form.changes.push_back(std::move(change));
    }
}

void noteChange(DialogForm& form, const DialogField& field, std::string before,
                const std::vector<std::string>& looksBefore) {
    const std::vector<std::string> looks = looksOf(form);
    FieldChange change{field.key, fieldText(field), std::move(before)};
    for (std::size_t i = 0; i < looks.size() && i < looksBefore.size(); ++i) {
        change.alone = change.alone && (looks[i] == looksBefore[i] || &form.fields[i] == &field);
    }
    addChange(form, std::move(change));
}

std::optional<DialogRefusal> storeCheck(DialogField& field, std::string_view text) {
    if (text != "0" && text != "1") {
        return refuse(field, "Please enter 0 or 1.");
    }
    **std::get_if<bool*>(&field.value) = text == "1";
    return std::nullopt;
}

} // namespace

DialogField* DialogForm::find(std::string_view key) {
    for (DialogField& field : fields) {
        if (field.key == key) {
            return &field;
        }
    }
    return nullptr;
}

const DialogField* DialogForm::find(std::string_view key) const {
    for (const DialogField& field : fields) {
        if (field.key == key) {
            return &field;
        }
    }
    return nullptr;
}

DialogField integerField(std::string key, std::string label, std::int32_t& value, std::optional<double> minimum,
                         std::optional<double> maximum) {
    DialogField field;
    field.key = std::move(key);
    field.label = std::move(label);
    field.kind = FieldKind::Integer;
    field.value = &value;
    field.minimum = minimum;
    field.maximum = maximum;
    return field;
}

DialogField realField(std::string key, std::string label, double& value, std::optional<double> minimum,
                      std::optional<double> maximum) {
    DialogField field;
    field.key = std::move(key);
    field.label = std::move(label);
    field.kind = FieldKind::Real;
    field.value = &value;
    field.minimum = minimum;
    field.maximum = maximum;
    return field;
}

DialogField checkField(std::string key, std::string label, bool& value) {
    DialogField field;
    field.key = std::move(key);
    field.label = std::move(label);
    field.kind = FieldKind::Check;
    field.value = &value;
    return field;
}

DialogField radioField(std::string key, std::int32_t& value, std::vector<std::string> choices) {
    return radioOver(std::move(key), &value, std::move(choices));
}

DialogField radioField(std::string key, bool& value, std::vector<std::string> choices) {
    return radioOver(std::move(key), &value, std::move(choices));
}

DialogField inGroup(DialogField field, std::string group) {
    field.group = std::move(group);
    return field;
}

DialogField shownOnly(DialogField field) {
    field.readOnly = true;
    return field;
}

void openDialog(DialogForm& form) {
    if (form.refresh) {
        form.refresh(form, "");
    }
}

namespace {

/// Puts the value of a field back at its end.
class KeptValue {
public:
    explicit KeptValue(DialogField& field) : field_(field), text_(fieldText(field)) {}
    KeptValue(const KeptValue&) = delete;
    KeptValue& operator=(const KeptValue&) = delete;
    ~KeptValue() { putFieldText(field_, text_); }

private:
    DialogField& field_;
    std::string text_;
};

} // namespace

void tryField(DialogForm& form, std::string_view key, std::string_view text) {
    DialogField* const field = form.find(key);
    if (field == nullptr || field->readOnly || !field->on || !form.tried) {
        return;
    }
    const KeptValue kept(*field);
    const bool good = !storeNumber(*field, text);
    form.tried(good);
}

std::optional<DialogRefusal> setField(DialogForm& form, std::string_view key, std::string_view text) {
    DialogField* field = form.find(key);
    if (field == nullptr) {
        return DialogRefusal{"The dialog has no field \"" + std::string(key) + "\".", std::string(key)};
    }
    if (field->readOnly) {
        return refuse(*field, "The field is read-only.");
    }
    if (!field->on) {
        return refuse(*field, "The field is off.");
    }
    std::optional<DialogRefusal> refusal;
    const std::string before = fieldText(*field);
    const std::vector<std::string> looksBefore = looksOf(form);
    switch (field->kind) {
    case FieldKind::Check:
        refusal = storeCheck(*field, text);
        break;
    case FieldKind::Radio:
        refusal = storeChoice(*field, text);
        break;
    case FieldKind::Integer:
    case FieldKind::Real:
        refusal = storeNumber(*field, text);
        break;
    }
    if (refusal) {
        return refusal;
    }
    if (form.refresh) {
        form.refresh(form, key);
    }
    noteChange(form, *field, before, looksBefore);
    return std::nullopt;
}

namespace {

/// The dialog's own tests. What they put right counts as set.
std::optional<DialogRefusal> confirmed(DialogForm& form) {
    std::vector<std::string> texts;
    std::transform(form.fields.begin(), form.fields.end(), std::back_inserter(texts), fieldText);
    auto refusal = form.confirm(form);
    for (std::size_t i = 0; refusal && i < form.fields.size() && i < texts.size(); ++i) {
        const DialogField& field = form.fields[i];
        if (fieldText(field) != texts[i] && field.on && !field.readOnly) {
            addChange(form, {field.key, fieldText(field), texts[i]});
        }
    }
    return refusal;
}

} // namespace

std::optional<DialogRefusal> acceptDialog(DialogForm& form) {
    if (!form.okOn) {
        return DialogRefusal{};
    }
    for (const DialogField& field : form.fields) {
        const bool isNumber = field.kind == FieldKind::Integer || field.kind == FieldKind::Real;
        if (isNumber && field.on && !field.readOnly && !inRange(field, fieldNumber(field))) {
            return refuse(field, rangeMessage(field));
        }
    }
    return form.confirm ? confirmed(form) : std::nullopt;
}

double fieldNumber(const DialogField& field) {
    if (const auto* integer = std::get_if<std::int32_t*>(&field.value)) {
        return **integer;
    }
    if (const auto* real = std::get_if<double*>(&field.value)) {
        return **real;
    }
    const double second = **std::get_if<bool*>(&field.value) ? 1.0 : 0.0;
    return field.kind == FieldKind::Radio ? 1.0 + second : second;
}

std::string numberText(double value) {
    std::array<char, 32> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return error == std::errc() ? std::string(buffer.data(), end) : std::string();
}

void putFieldText(DialogField& field, std::string_view text) {
    const auto number = parseNumber<double>(text);
    if (!number) {
        return;
    }
    if (auto* const integer = std::get_if<std::int32_t*>(&field.value)) {
        **integer = static_cast<std::int32_t>(*number);
    } else if (auto* const real = std::get_if<double*>(&field.value)) {
        **real = *number;
    } else {
        **std::get_if<bool*>(&field.value) = *number == (field.kind == FieldKind::Radio ? 2.0 : 1.0);
    }
}

std::string fieldText(const DialogField& field) {
    if (field.kind == FieldKind::Real) {
        return numberText(fieldNumber(field));
    }
    return std::to_string(static_cast<std::int64_t>(fieldNumber(field)));
}

} // namespace velmora
