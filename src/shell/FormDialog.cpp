#include "FormDialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>
#include <exception>

#include "field_words.h"
#include "qt_text.h"

namespace velmora {

namespace {

/// Radio groups that follow each other stand side by side, this many in a row.
constexpr std::size_t radiosInRow = 3;
constexpr int editWidth = 150;
/// What a window manager needs for its buttons and for letters that are wider than ours: no title is cut.
constexpr int roomBesideTitle = 160;
constexpr int roomBesideFrame = 12;
/// Whoever has typed nothing for so many milliseconds looks at what comes of it.
constexpr int typingRests = 300;
/// Those of OK and Cancel.
const QString keysOfButtons = QStringLiteral("OC");

bool isNumber(const DialogField& field) {
    return field.kind == FieldKind::Integer || field.kind == FieldKind::Real;
}

/// A number without a label stands beside the field before it.
bool standsBeside(const DialogField& field) {
    return isNumber(field) && field.label.empty();
}

/// The longest run of check boxes from `first` on that have a number each beside them, with the numbers.
template <class Fields>
Fields takePairs(const Fields& fields, std::size_t first) {
    Fields run;
    for (std::size_t i = first; i + 1 < fields.size(); i += 2) {
        if (fields[i]->kind != FieldKind::Check || !standsBeside(*fields[i + 1]) ||
            fields[i]->group != fields[first]->group) {
            break;
        }
        run.push_back(fields[i]);
        run.push_back(fields[i + 1]);
    }
    return run;
}

/// The longest run of fields from `first` on that agree with it by `same`.
template <class Fields, class Same>
Fields takeRun(const Fields& fields, std::size_t first, Same same) {
    Fields run;
    for (std::size_t i = first; i < fields.size() && same(*fields[first], *fields[i]); ++i) {
        run.push_back(fields[i]);
    }
    return run;
}

/// A field without a label is named after its key.
QString nameOf(const DialogField& field) {
    if (!field.label.empty()) {
        return qtText(field.label);
    }
    QString name = qtText(field.key);
    name.front() = name.front().toUpper();
    return name;
}

} // namespace

namespace {

int widthFor(const QLineEdit& edit, const QString& longest) {
    constexpr int frame = 16;
    return edit.fontMetrics().horizontalAdvance(longest) + frame;
}

int widthOfIntegers(const QLineEdit& edit) {
    return widthFor(edit, QStringLiteral("-2222222222"));
}

} // namespace

int widthOfReals(const QLineEdit& edit) {
    return widthFor(edit, QStringLiteral("-2.2222222222222222e-222"));
}

void lookReadOnly(QLineEdit& edit) {
    edit.setReadOnly(true);
    edit.setFocusPolicy(Qt::ClickFocus);
    QPalette ground = edit.palette();
    ground.setColor(QPalette::Base, ground.color(QPalette::Window));
    edit.setPalette(ground);
}

FormDialog::FormDialog(DialogForm& form, QWidget* parent) : QDialog(parent), form_(form), keys_(keysOfButtons) {
    setObjectName(qtText(form.name));
    setWindowTitle(qtText(form.title));
    auto* column = new QVBoxLayout(this);
    Fields fields;
    for (const DialogField& field : form.fields) {
        fields.push_back(&field);
    }
    placeFields(*column, fields, false);
    for (const std::string& notice : form.notices) {
        auto* label = new QLabel(qtText(notice), this);
        label->setTextFormat(Qt::PlainText);
        column->addWidget(label);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &FormDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &FormDialog::reject);
    column->addSpacing(4);
    column->addWidget(buttons);
    column->addStrut(fontMetrics().horizontalAdvance(windowTitle()) + roomBesideTitle);
    column->setSizeConstraint(QLayout::SetFixedSize);
    typing_.setSingleShot(true);
    typing_.setInterval(typingRests);
    connect(&typing_, &QTimer::timeout, this, &FormDialog::tryTyped);
    showForm();
    focusOnFirst();
}

void FormDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (wasShown_ || !form_.tried) {
        return;
    }
    wasShown_ = true;
    if (const QWidget* const frame = parentWidget() != nullptr ? parentWidget()->window() : nullptr) {
        const QRect room = frame->geometry();
        move(room.right() - frameGeometry().width() - roomBesideFrame,
             room.bottom() - frameGeometry().height() - 3 * roomBesideFrame);
    }
    try {
        tellTried();
    } catch (const std::exception&) {
        // The command itself will tell of what goes wrong.
    }
}

FormDialog::~FormDialog() {
    // A field that loses the focus as the window goes away has nobody left to tell.
    for (const Control& control : controls_) {
        if (control.edit != nullptr) {
            control.edit->disconnect(this);
        }
    }
}

// ---- Layout ---------------------------------------------------------------------------------------------------------

void FormDialog::placeFields(QVBoxLayout& column, const Fields& fields, bool insideFrame) {
    const auto sameGroup = [](const DialogField& a, const DialogField& b) { return a.group == b.group; };
    const auto sameSort = [&](const DialogField& a, const DialogField& b) {
        return sameGroup(a, b) && (a.kind == b.kind || (isNumber(a) && isNumber(b)));
    };
    for (std::size_t i = 0; i < fields.size();) {
        Fields run;
        if (!fields[i]->group.empty() && !insideFrame) {
            run = takeRun(fields, i, sameGroup);
            placeFrame(column, run);
        } else if (fields[i]->kind == FieldKind::Radio) {
            run = takeRun(fields, i, sameSort);
            placeRadios(column, run);
        } else if (run = takePairs(fields, i); !run.empty()) {
            placeChecksWithNumbers(column, run);
        } else if (fields[i]->kind == FieldKind::Check) {
            run = {fields[i]};
            placeCheck(column, *fields[i]);
        } else {
            run = takeRun(fields, i, sameSort);
            placeNumbers(column, run);
        }
        i += run.size();
    }
}

void FormDialog::placeFrame(QVBoxLayout& column, const Fields& fields) {
    auto* frame = new QGroupBox(qtText(fields.front()->group), this);
    auto* inside = new QVBoxLayout(frame);
    placeFields(*inside, fields, true);
    column.addWidget(frame);
}

void FormDialog::placeRadios(QVBoxLayout& column, const Fields& fields) {
    QHBoxLayout* row = nullptr;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (i % radiosInRow == 0) {
            row = new QHBoxLayout;
            column.addLayout(row);
        }
        row->addWidget(makeRadios(*fields[i]));
    }
}

QGroupBox* FormDialog::makeRadios(const DialogField& field) {
    Control control;
    control.key = field.key;
    control.frame = new QGroupBox(qtText(field.label), this);
    control.frame->setObjectName(qtText(field.key));
    control.frame->setAccessibleName(nameOf(field));
    control.choices = new QButtonGroup(control.frame);
    auto* inside = new QVBoxLayout(control.frame);
    for (std::size_t i = 0; i < field.choices.size(); ++i) {
        const int number = static_cast<int>(i) + 1;
        auto* button = new QRadioButton(keys_.mark(qtText(field.choices[i])), control.frame);
        button->setObjectName(QStringLiteral("%1.%2").arg(qtText(field.key)).arg(number));
        control.choices->addButton(button, number);
        inside->addWidget(button);
        connect(button, &QAbstractButton::clicked, this,
                [this, key = field.key, number] { click(key, std::to_string(number)); });
    }
    inside->addStretch();
    controls_.push_back(control);
    return control.frame;
}

QLineEdit* FormDialog::makeEdit(const DialogField& field, const QString& name) {
    auto* edit = new QLineEdit(this);
    edit->setObjectName(qtText(field.key));
    edit->setAccessibleName(name);
    edit->setFixedWidth(field.kind == FieldKind::Real ? widthOfReals(*edit)
                                                      : std::max(editWidth, widthOfIntegers(*edit)));
    if (field.readOnly) {
        lookReadOnly(*edit);
    }
    connect(edit, &QLineEdit::editingFinished, this, [this, key = field.key] { takeSilently(key); });
    connect(edit, &QLineEdit::textEdited, this, [this, key = field.key] { awaitMoreTyping(key); });
    return edit;
}

void FormDialog::placeNumbers(QVBoxLayout& column, const Fields& fields) {
    auto* grid = new QGridLayout;
    grid->setColumnStretch(0, 1);
    int row = -1;
    int place = 0;
    for (const DialogField* field : fields) {
        Control control;
        control.key = field->key;
        const bool beside = standsBeside(*field) && row >= 0;
        row += beside ? 0 : 1;
        place = beside ? place + 2 : 0;
        const QString name = nameOf(*field);
        control.edit = makeEdit(*field, name);
        control.label = new QLabel(field->readOnly ? name : keys_.mark(name), this);
        control.label->setBuddy(control.edit);
        grid->addWidget(control.label, row, place);
        grid->addWidget(control.edit, row, place + 1);
        controls_.push_back(control);
    }
    column.addLayout(grid);
}

void FormDialog::placeChecksWithNumbers(QVBoxLayout& column, const Fields& fields) {
    auto* grid = new QGridLayout;
    grid->setColumnStretch(0, 1);
    for (std::size_t i = 0; i + 1 < fields.size(); i += 2) {
        const int row = static_cast<int>(i / 2);
        grid->addWidget(makeCheck(*fields[i]), row, 0);
        Control control;
        control.key = fields[i + 1]->key;
        control.edit = makeEdit(*fields[i + 1], nameOf(*fields[i]));
        grid->addWidget(control.edit, row, 1);
        controls_.push_back(control);
    }
    column.addLayout(grid);
}

QCheckBox* FormDialog::makeCheck(const DialogField& field) {
    Control control;
    control.key = field.key;
    control.check = new QCheckBox(keys_.mark(qtText(field.label)), this);
    control.check->setObjectName(qtText(field.key));
    control.check->setAccessibleName(nameOf(field));
    connect(control.check, &QAbstractButton::clicked, this,
            [this, key = field.key](bool checked) { click(key, checked ? "1" : "0"); });
    controls_.push_back(control);
    return control.check;
}

void FormDialog::placeCheck(QVBoxLayout& column, const DialogField& field) {
    column.addWidget(makeCheck(field));
}

// ---- What is typed and clicked --------------------------------------------------------------------------------------

FormDialog::Control* FormDialog::control(const std::string& key) {
    const auto found = std::find_if(controls_.begin(), controls_.end(), [&](const Control& c) { return c.key == key; });
    return found == controls_.end() ? nullptr : &*found;
}

/// An access key presses a choice for a moment before it counts; Return must not overtake it.
void FormDialog::finishClicks() {
    for (QAbstractButton* button : findChildren<QAbstractButton*>()) {
        if (button->isCheckable() && button->isDown()) {
            button->click();
        }
    }
}

void FormDialog::click(const std::string& key, const std::string& text) {
    setField(form_, key, text);
    showForm();
    focusOnNumberOf(key);
    tellTried();
}

/// A box that was ticked leaves the keyboard to the number that it turned on.
void FormDialog::focusOnNumberOf(const std::string& key) {
    for (std::size_t i = 0; i + 1 < form_.fields.size(); ++i) {
        const DialogField& field = form_.fields[i];
        const DialogField& next = form_.fields[i + 1];
        if (field.key == key && field.kind == FieldKind::Check && fieldText(field) == "1" && standsBeside(next) &&
            next.on) {
            focusOn(next.key);
        }
    }
}

/// The user leaves a field: a good number is taken, so that what depends on it follows. A bad one stays as typed
/// until OK.
void FormDialog::takeSilently(const std::string& key) {
    const Control& typed = *control(key);
    const QString text = typed.edit->text().trimmed();
    typing_.stop();
    if (typed.edit->isReadOnly() || text == typed.shown) {
        if (triesTyped_) {
            tellTried(); // it was typed back
        }
        return;
    }
    if (!setField(form_, key, plainBytes(text))) {
        control(key)->shown = text;
        showForm();
    }
    tellTried();
}

/// While a field shows what cannot be taken the rest is not tried either.
void FormDialog::tellTried() {
    triesTyped_ = false;
    if (form_.tried) {
        form_.tried(showsOnlyTaken(nullptr));
    }
}

/// No field, but for that one, shows what the form does not hold.
bool FormDialog::showsOnlyTaken(const Control* but) const {
    return std::all_of(controls_.begin(), controls_.end(), [but](const Control& each) {
        return &each == but || each.edit == nullptr || each.edit->text().trimmed() == each.shown;
    });
}

void FormDialog::awaitMoreTyping(const std::string& key) {
    if (form_.tried) {
        typedKey_ = key;
        typing_.start();
    }
}

/// A number that is still being typed is tried and not taken: what depends on it follows when the field is left.
void FormDialog::tryTyped() {
    const Control& typed = *control(typedKey_);
    triesTyped_ = true;
    try {
        if (showsOnlyTaken(&typed)) {
            tryField(form_, typedKey_, plainBytes(typed.edit->text().trimmed()));
        } else {
            form_.tried(false);
        }
    } catch (const std::exception&) {
        // The command itself will tell of what goes wrong.
    }
}

std::optional<DialogRefusal> FormDialog::takeTyped() {
    for (Control& typed : controls_) {
        const DialogField& field = *form_.find(typed.key);
        if (typed.edit == nullptr || field.readOnly || !field.on) {
            continue;
        }
        const QString text = typed.edit->text().trimmed();
        if (text == typed.shown) {
            continue;
        }
        if (auto refusal = setField(form_, typed.key, plainBytes(text))) {
            return refusal;
        }
        typed.shown = text;
        showForm();
    }
    return std::nullopt;
}

void FormDialog::accept() {
    typing_.stop();
    finishClicks();
    auto refusal = takeTyped();
    if (!refusal) {
        refusal = acceptDialog(form_);
        // The form's tests may have put a number right.
        showForm();
    }
    if (refusal) {
        tell(*refusal);
        return;
    }
    QDialog::accept();
}

void FormDialog::tell(const DialogRefusal& refusal) {
    if (!refusal.message.empty()) {
        QMessageBox box(QMessageBox::Warning, windowTitle(), qtText(refusal.message), QMessageBox::Ok, this);
        box.setObjectName(QStringLiteral("messageBox"));
        box.setTextFormat(Qt::PlainText);
        if (const DialogField* field = form_.find(refusal.key)) {
            nameField(box, *field);
        }
        box.exec();
    }
    focusOn(refusal.key);
}

// ---- What is shown --------------------------------------------------------------------------------------------------

void FormDialog::showForm() {
    for (Control& control : controls_) {
        showField(control, *form_.find(control.key));
    }
    findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->setEnabled(form_.okOn);
}

void FormDialog::showField(Control& control, const DialogField& field) {
    const std::string text = fieldText(field);
    if (control.check != nullptr) {
        control.check->setChecked(text == "1");
        control.check->setEnabled(field.on && !field.readOnly);
    } else if (control.choices != nullptr) {
        for (QAbstractButton* button : control.choices->buttons()) {
            const int number = control.choices->id(button);
            button->setChecked(std::to_string(number) == text);
            button->setEnabled(field.on && field.choiceOn[static_cast<std::size_t>(number - 1)]);
        }
    } else {
        // What the user is typing stays, unless a rule gave the field another value or took it away.
        if (qtText(text) != control.shown || !field.on) {
            control.shown = qtText(text);
            control.edit->setText(control.shown);
            control.edit->setCursorPosition(0); // the sign stays in sight
        }
        control.edit->setEnabled(field.on);
        control.edit->setToolTip(valuesOf(field)); // the range may follow the model or another field
        if (control.label != nullptr) {
            control.label->setEnabled(field.on);
        }
    }
}

void FormDialog::focusOn(const std::string& key) {
    const Control* target = control(key);
    if (target == nullptr) {
        return;
    }
    if (target->edit != nullptr) {
        target->edit->setFocus();
        // From the end to the front: the cursor stands before the sign.
        target->edit->setSelection(static_cast<int>(target->edit->text().size()),
                                   -static_cast<int>(target->edit->text().size()));
    } else if (target->check != nullptr) {
        target->check->setFocus();
    } else if (QAbstractButton* button = target->choices->checkedButton()) {
        button->setFocus();
    }
}

void FormDialog::focusOnFirst() {
    if (!form_.focus.empty() && form_.find(form_.focus)->on) {
        focusOn(form_.focus);
        return;
    }
    const auto typed = std::find_if(controls_.begin(), controls_.end(), [this](const Control& control) {
        const DialogField& field = *form_.find(control.key);
        return control.edit != nullptr && field.on && !field.readOnly;
    });
    if (typed != controls_.end()) {
        focusOn(typed->key);
    } else if (!controls_.empty()) {
        focusOn(controls_.front().key);
    }
}

} // namespace velmora
