#include "FormDialog.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <cstdlib>

#include "AccessKeys.h"
#include "DialogValues.h"
#include "DocumentState.h"
#include "Person.h"
#include "RecordingUi.h"
#include "field_words.h"
#include "qt_text.h"

namespace velmora::test {
namespace {

/// A form with every sort of field: choosing kind 2 turns the count off and doubles the total.
struct Sample {
    std::int32_t total = 7;
    std::int32_t kind = 1;
    std::int32_t count = 3;
    double length = 0.25;
    bool looped = false;
    std::vector<std::string> changes;
    DialogForm form;

    Sample() {
        form.name = "CSample";
        form.title = "Sample title";
        form.notices = {"Mind the gap"};
        DialogField kinds = radioField("kind", kind, {"One", "Two", "Three"});
        kinds.label = "Kinds";
        kinds.choiceOn[2] = false;
        form.fields = {shownOnly(integerField("total", "Total", total)), kinds,
                       inGroup(integerField("count", "Count", count, 1, 10), "Numbers"),
                       inGroup(realField("length", "Length", length), "Numbers"),
                       checkField("looped", "Make a loop", looped)};
        form.refresh = [this](DialogForm& self, std::string_view key) {
            changes.emplace_back(key);
            self.find("count")->on = kind == 1;
            if (key == "kind" && kind == 2) {
                total *= 2;
            }
        };
        openDialog(form);
    }
};

template <class Widget>
Widget& part(const QDialog& dialog, const char* name) {
    return *dialog.findChild<Widget*>(QString::fromLatin1(name));
}

/// A text without its access mark.
QString words(QString text) {
    text.replace(QLatin1String("&&"), QLatin1String("\n")).remove(QLatin1Char('&'));
    return text.replace(QLatin1Char('\n'), QLatin1Char('&'));
}

TEST(FormDialog, HasOkOffWhileTheFormSaysSo) {
    CFirstPoint values;
    values.pointInside = true;
    DialogForm form = describe(values);
    openDialog(form);
    const FormDialog dialog(form);
    const QPushButton& ok = *dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    EXPECT_FALSE(ok.isEnabled());
    part<QCheckBox>(dialog, "makeLoop").click();
    EXPECT_TRUE(ok.isEnabled());
}

TEST(FormDialog, TakesNoClickOnACheckBoxThatIsShownOnly) {
    CFirstPoint values;
    values.closed = true;
    DialogForm form = describe(values);
    openDialog(form);
    const FormDialog dialog(form);
    EXPECT_TRUE(part<QCheckBox>(dialog, "closed").isChecked());
    EXPECT_FALSE(part<QCheckBox>(dialog, "closed").isEnabled());
}

TEST(FormDialog, OkDoesNotOvertakeAChoiceThatItsAccessKeyStillPresses) {
    Sample sample;
    FormDialog dialog(sample.form);
    part<QRadioButton>(dialog, "kind.2").animateClick();
    dialog.accept();
    EXPECT_EQ(sample.kind, 2);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

/// What a dialog tries, with the values that it was tried with.
struct TriedSample : Sample {
    std::vector<std::string> tried;

    TriedSample() {
        form.tried = [this](bool good) {
            tried.push_back((good ? "good " : "bad ") + std::to_string(count) + ' ' + std::to_string(length));
        };
    }
    /// The last that was tried, once so many were.
    std::string awaited(std::size_t times) {
        QElapsedTimer waiting;
        for (waiting.start(); tried.size() < times && waiting.elapsed() < 5000;) {
            QApplication::processEvents(QEventLoop::AllEvents, 50);
        }
        EXPECT_EQ(tried.size(), times);
        return tried.empty() ? "" : tried.back();
    }
};

void type(QLineEdit& edit, const char* text) {
    edit.setText(QString::fromLatin1(text));
    emit edit.textEdited(edit.text());
}

TEST(FormDialog, ANumberThatIsBeingTypedIsTriedOnceTheKeysRest) {
    TriedSample sample;
    FormDialog dialog(sample.form);
    dialog.show();
    ASSERT_EQ(sample.awaited(1), "good 3 0.250000") << "as it opens";
    auto& length = part<QLineEdit>(dialog, "length");
    QElapsedTimer sinceTyped;
    sinceTyped.start();
    type(length, "0.257");
    type(length, "0.2575");
    EXPECT_EQ(sample.awaited(2), "good 3 0.257500") << "both digits at once";
    EXPECT_GE(sinceTyped.elapsed(), 250);
    EXPECT_EQ(sample.length, 0.25) << "it is not taken yet";
    EXPECT_EQ(length.text(), QStringLiteral("0.2575"));
    type(length, "0.2575,");
    EXPECT_EQ(sample.awaited(3), "bad 3 0.250000");
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "and nobody is told";
    type(length, "0.2575");
    emit length.editingFinished();
    EXPECT_EQ(sample.tried.back(), "good 3 0.257500") << "left, it is taken";
    EXPECT_EQ(sample.length, 0.2575);
}

TEST(FormDialog, WhatIsTypedBackIsTriedBackToo) {
    TriedSample sample;
    FormDialog dialog(sample.form);
    dialog.show();
    auto& length = part<QLineEdit>(dialog, "length");
    sample.awaited(1);
    type(length, "0.251");
    EXPECT_EQ(sample.awaited(2), "good 3 0.251000");
    type(length, "0.25");
    emit length.editingFinished();
    EXPECT_EQ(sample.awaited(3), "good 3 0.250000") << "at once, as the field is left";
}

TEST(FormDialog, BesideAFieldThatCannotBeTakenNothingIsTried) {
    TriedSample sample;
    FormDialog dialog(sample.form);
    dialog.show();
    sample.awaited(1);
    auto& count = part<QLineEdit>(dialog, "count");
    type(count, "3x");
    emit count.editingFinished();
    EXPECT_EQ(sample.awaited(2), "bad 3 0.250000");
    type(part<QLineEdit>(dialog, "length"), "0.259");
    EXPECT_EQ(sample.awaited(3), "bad 3 0.250000");
}

TEST(FormDialog, ABoxThatWasTickedLeavesTheKeyboardToItsNumber) {
    CPrescribe values;
    DialogForm form = describe(values);
    openDialog(form);
    FormDialog dialog(form);
    part<QCheckBox>(dialog, "useY").click();
    ASSERT_NE(dialog.focusWidget(), nullptr);
    EXPECT_EQ(dialog.focusWidget()->objectName(), QStringLiteral("y"));
    part<QCheckBox>(dialog, "useZ").setFocus();
    part<QCheckBox>(dialog, "useY").click();
    EXPECT_EQ(dialog.focusWidget()->objectName(), QStringLiteral("useZ")) << "unticked it has no number to go to";
}

TEST(FormDialog, ShowsTheTitleTheLabelsTheFramesAndTheNotices) {
    Sample sample;
    const FormDialog dialog(sample.form);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Sample title"));
    EXPECT_EQ(part<QGroupBox>(dialog, "kind").title(), QStringLiteral("Kinds"));
    EXPECT_EQ(words(part<QRadioButton>(dialog, "kind.2").text()), QStringLiteral("Two"));
    EXPECT_EQ(words(part<QCheckBox>(dialog, "looped").text()), QStringLiteral("Make a loop"));
    QStringList labels;
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        labels.append(words(label->text()));
    }
    EXPECT_EQ(labels, QStringList({"Total", "Count", "Length", "Mind the gap"}));
    const auto* frame = qobject_cast<QGroupBox*>(part<QLineEdit>(dialog, "count").parentWidget());
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->title(), QStringLiteral("Numbers"));
    EXPECT_EQ(part<QLineEdit>(dialog, "length").parentWidget(), frame);
}

TEST(FormDialog, ShowsTheValues) {
    Sample sample;
    sample.looped = true;
    const FormDialog dialog(sample.form);
    EXPECT_EQ(part<QLineEdit>(dialog, "total").text(), QStringLiteral("7"));
    EXPECT_EQ(part<QLineEdit>(dialog, "count").text(), QStringLiteral("3"));
    EXPECT_EQ(part<QLineEdit>(dialog, "length").text(), QStringLiteral("0.25"));
    EXPECT_TRUE(part<QRadioButton>(dialog, "kind.1").isChecked());
    EXPECT_TRUE(part<QCheckBox>(dialog, "looped").isChecked());
}

TEST(FormDialog, AReadOnlyFieldTakesNoTypingAndNoTab) {
    Sample sample;
    const FormDialog dialog(sample.form);
    EXPECT_TRUE(part<QLineEdit>(dialog, "total").isReadOnly());
    EXPECT_EQ(part<QLineEdit>(dialog, "total").focusPolicy(), Qt::ClickFocus);
}

TEST(FormDialog, AClickGoesThroughTheRulesAndShowsWhatTheyChanged) {
    Sample sample;
    const FormDialog dialog(sample.form);
    part<QRadioButton>(dialog, "kind.2").click();
    EXPECT_EQ(sample.kind, 2);
    EXPECT_FALSE(part<QLineEdit>(dialog, "count").isEnabled());
    EXPECT_EQ(part<QLineEdit>(dialog, "total").text(), QStringLiteral("14"));
    part<QCheckBox>(dialog, "looped").click();
    EXPECT_TRUE(sample.looped);
    EXPECT_EQ(sample.changes, std::vector<std::string>({"", "kind", "looped"}));
}

TEST(FormDialog, AChoiceThatIsOffCannotBeClicked) {
    Sample sample;
    const FormDialog dialog(sample.form);
    EXPECT_FALSE(part<QRadioButton>(dialog, "kind.3").isEnabled());
    part<QRadioButton>(dialog, "kind.3").click();
    EXPECT_EQ(sample.kind, 1);
}

TEST(FormDialog, WhatIsTypedIsTakenByOkInTheOrderOfTheFields) {
    Sample sample;
    FormDialog dialog(sample.form);
    part<QLineEdit>(dialog, "length").setText(QStringLiteral(" 1.5 "));
    part<QLineEdit>(dialog, "count").setText(QStringLiteral("9"));
    EXPECT_EQ(sample.count, 3) << "not before";
    dialog.accept();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(sample.count, 9);
    EXPECT_EQ(sample.length, 1.5);
    EXPECT_EQ(sample.changes, std::vector<std::string>({"", "count", "length"}));
}

TEST(FormDialog, WhatIsTypedInOneFieldStaysWhileAnotherChanges) {
    Sample sample;
    const FormDialog dialog(sample.form);
    part<QLineEdit>(dialog, "length").setText(QStringLiteral("half"));
    part<QCheckBox>(dialog, "looped").click();
    EXPECT_EQ(part<QLineEdit>(dialog, "length").text(), QStringLiteral("half"));
}

TEST(FormDialog, AFieldThatGoesOffShowsItsValueAgain) {
    Sample sample;
    FormDialog dialog(sample.form);
    part<QLineEdit>(dialog, "count").setText(QStringLiteral("99"));
    part<QRadioButton>(dialog, "kind.2").click();
    EXPECT_EQ(part<QLineEdit>(dialog, "count").text(), QStringLiteral("3"));
    dialog.accept();
    EXPECT_EQ(dialog.result(), QDialog::Accepted) << "what was typed in it does not count";
    EXPECT_EQ(sample.count, 3);
}

TEST(FormDialog, ARefusalWithoutWordsKeepsTheDialogOpenOnItsField) {
    Sample sample;
    sample.form.confirm = [&sample](DialogForm&) -> std::optional<DialogRefusal> {
        sample.length = 2.0;
        return DialogRefusal{"", "length"};
    };
    FormDialog dialog(sample.form);
    dialog.show();
    dialog.activateWindow();
    QApplication::processEvents();
    dialog.accept();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(part<QLineEdit>(dialog, "length").text(), QStringLiteral("2")) << "as the test put it right";
    EXPECT_EQ(dialog.focusWidget(), &part<QLineEdit>(dialog, "length"));
    EXPECT_EQ(part<QLineEdit>(dialog, "length").selectedText(), QStringLiteral("2"));
}

TEST(FormDialog, TheFirstFieldToTypeInHasTheFocusAndIsSelected) {
    Sample sample;
    const FormDialog dialog(sample.form);
    EXPECT_EQ(dialog.focusWidget(), &part<QLineEdit>(dialog, "count"));
    EXPECT_EQ(part<QLineEdit>(dialog, "count").selectedText(), QStringLiteral("3"));
}

TEST(FormDialog, ShowsANumberOfSeventeenDigitsWholeFromItsSignOn) {
    CBlockRotate values;
    values.x1 = -2.2222222222222222e-200;
    values.y1 = -8.8888888888888888e+200;
    DialogForm form = describe(values);
    openDialog(form);
    FormDialog dialog(form);
    dialog.show();
    QApplication::processEvents();
    for (const char* key : {"x1", "y1"}) {
        const QLineEdit& edit = part<QLineEdit>(dialog, key);
        EXPECT_GE(edit.text().size(), 22) << key;
        EXPECT_GT(edit.width(), edit.fontMetrics().horizontalAdvance(edit.text()) + 4) << key;
        EXPECT_EQ(edit.cursorPosition(), 0) << key;
    }
    EXPECT_EQ(dialog.focusWidget(), &part<QLineEdit>(dialog, "x1"));
    EXPECT_EQ(part<QLineEdit>(dialog, "x1").selectedText(), part<QLineEdit>(dialog, "x1").text())
        << "ready to be typed over";
}

TEST(FormDialog, ANumberWithoutALabelStandsBesideItsCheckBox) {
    CPrescribe values;
    DialogForm form = describe(values);
    openDialog(form);
    FormDialog dialog(form);
    dialog.show();
    QApplication::processEvents();
    for (const auto& [box, number] : {std::pair{"useX", "x"}, {"useY", "y"}, {"useZ", "z"}}) {
        const QRect left = part<QCheckBox>(dialog, box).geometry();
        const QRect right = part<QLineEdit>(dialog, number).geometry();
        EXPECT_LT(left.right(), right.left()) << number;
        EXPECT_LE(std::abs(left.center().y() - right.center().y()), 1) << number;
    }
    EXPECT_EQ(part<QLineEdit>(dialog, "y").accessibleName(), QStringLiteral("Y coordinate"));
}

TEST(FormDialog, ANumberWithoutALabelStandsBesideTheNumberBeforeIt) {
    std::int32_t count = 1;
    double border = 0.1;
    DialogForm form;
    form.name = "CBeside";
    form.fields = {integerField("count", "Number", count), realField("border", "", border)};
    FormDialog dialog(form);
    dialog.show();
    QApplication::processEvents();
    const QRect left = part<QLineEdit>(dialog, "count").geometry();
    const QRect right = part<QLineEdit>(dialog, "border").geometry();
    EXPECT_LT(left.right(), right.left());
    EXPECT_EQ(left.top(), right.top());
    EXPECT_EQ(part<QLineEdit>(dialog, "border").accessibleName(), QStringLiteral("Border"));
    const auto labels = dialog.findChildren<QLabel*>();
    const auto own = std::find_if(labels.begin(), labels.end(), [&dialog](const QLabel* label) {
        return label->buddy() == &part<QLineEdit>(dialog, "border");
    });
    ASSERT_NE(own, labels.end());
    EXPECT_EQ(QString((*own)->text()).remove(QLatin1Char('&')), QStringLiteral("Border"));
    EXPECT_LT(left.right(), (*own)->geometry().left());
    EXPECT_LT((*own)->geometry().right(), right.left());
}

// ---- Refusals -------------------------------------------------------------------------------------------------------

/// Opens the dialog, so that it has a focus; types and presses OK.
struct OpenSample : Sample {
    Person person;
    FormDialog dialog{form};

    OpenSample() {
        dialog.show();
        dialog.activateWindow();
        EXPECT_TRUE(waitUntil([this] { return dialog.isActiveWindow(); }));
        changes.clear();
    }
    QLineEdit& edit(const char* key) { return part<QLineEdit>(dialog, key); }
    void type(const char* key, const char* text) { edit(key).setText(QString::fromLatin1(text)); }
    /// As if the user went on to another field.
    void leave(const char* key) { emit edit(key).editingFinished(); }
};

TEST(FormDialog, ANumberThatIsRefusedIsToldAndKeepsTheFocusSelected) {
    struct Case {
        const char* key;
        const char* text;
        const char* message;
        const char* field;
    };
    const char* const count = "The field is \"Count\".";
    const char* const length = "The field is \"Length\". It takes a number; decimals stand behind a point, as in 0.5.";
    const Case cases[] = {
        {.key = "count", .text = "0", .message = "Please enter an integer between 1 and 10.", .field = count},
        {.key = "count", .text = "11", .message = "Please enter an integer between 1 and 10.", .field = count},
        {.key = "count", .text = "2.5", .message = "Please enter an integer between 1 and 10.", .field = count},
        {.key = "count", .text = "", .message = "Please enter an integer between 1 and 10.", .field = count},
        {.key = "length", .text = "long", .message = "Please enter a number.", .field = length},
        {.key = "length", .text = "1,5", .message = "Please enter a number.", .field = length},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.key) + "=" + c.text);
        OpenSample sample;
        sample.edit("total").setFocus();
        sample.type(c.key, c.text);
        sample.person.at("messageBox", [&](QWidget& open) {
            const auto& box = dynamic_cast<QMessageBox&>(open);
            EXPECT_EQ(box.text(), QString::fromLatin1(c.message));
            EXPECT_EQ(box.informativeText(), QString::fromLatin1(c.field));
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Sample title"));
            EXPECT_EQ(box.icon(), QMessageBox::Warning);
            EXPECT_EQ(box.standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
            EXPECT_EQ(box.parentWidget(), &sample.dialog);
            open.close();
        });
        sample.dialog.accept();
        EXPECT_TRUE(sample.dialog.isVisible());
        EXPECT_EQ(sample.dialog.focusWidget(), &sample.edit(c.key));
        EXPECT_EQ(sample.edit(c.key).selectedText(), QString::fromLatin1(c.text)) << "ready to be typed over";
        EXPECT_EQ(sample.count, 3);
        EXPECT_EQ(sample.length, 0.25);
    }
}

TEST(FormDialog, EachNumberTellsWhatItTakesWhileItIsPointedAt) {
    double any = 0.0;
    double part = 0.5;
    double positive = 1.0;
    std::int32_t low = 0;
    std::int32_t count = 5;
    DialogForm form;
    form.name = "CRanges";
    form.fields = {realField("any", "Any", any),
                   realField("part", "Part", part, 0.001, 0.999),
                   realField("positive", "Positive", positive, 1e-7),
                   integerField("low", "Low", low, {}, 7),
                   integerField("count", "Count", count, 2, 2000000),
                   shownOnly(integerField("total", "Total", count))};
    form.refresh = [](DialogForm& self, std::string_view key) {
        if (key == "part") {
            self.find("count")->maximum = 9;
        }
    };
    openDialog(form);
    FormDialog dialog(form);
    const auto tip = [&dialog](const char* key) { return dialog.findChild<QLineEdit*>(key)->toolTip(); };
    EXPECT_EQ(tip("any"), QStringLiteral("A number"));
    EXPECT_EQ(tip("part"), QStringLiteral("A number between 0.001 and 0.999"));
    EXPECT_EQ(tip("positive"), QStringLiteral("A number from 1e-07 on"));
    EXPECT_EQ(tip("low"), QStringLiteral("An integer up to 7"));
    EXPECT_EQ(tip("count"), QStringLiteral("An integer between 2 and 2000000"));
    EXPECT_EQ(tip("total"), QStringLiteral("Shown only"));
    dialog.findChild<QLineEdit*>("part")->setText(QStringLiteral("0.25"));
    emit dialog.findChild<QLineEdit*>("part")->editingFinished();
    EXPECT_EQ(tip("count"), QStringLiteral("An integer between 2 and 9")) << "the range followed another field";
}

TEST(FieldWords, NameTheFieldAndWhatTheBoxDoesNotTell) {
    std::int32_t whole = 3;
    double real = 0.5;
    bool second = false;
    const auto wordsFor = [](const DialogField& field) {
        QMessageBox box;
        nameField(box, field);
        return plainBytes(box.informativeText());
    };
    EXPECT_EQ(wordsFor(integerField("m", "Points", whole, 2)),
              "The field is \"Points\". It takes an integer from 2 on.");
    EXPECT_EQ(wordsFor(integerField("m", "Points", whole, 2, 9)), "The field is \"Points\".");
    EXPECT_EQ(wordsFor(realField("part", "", real, 0.0, 1.0)),
              "The field is \"part\". It takes a number between 0 and 1; decimals stand behind a point, as in 0.5.");
    EXPECT_EQ(wordsFor(checkField("second", "Second end", second)), "The field is \"Second end\".");
}

/// Whatever font a desktop has.
TEST(FormDialog, AnIntegerIsSeenWholeInALargeFontToo) {
    std::int32_t number = -2147483647;
    DialogForm form;
    form.name = "CLarge";
    form.fields = {integerField("number", "Number", number)};
    openDialog(form);
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSize(30);
    QApplication::setFont(large);
    FormDialog dialog(form);
    const auto& edit = part<QLineEdit>(dialog, "number");
    EXPECT_GT(edit.width(), edit.fontMetrics().horizontalAdvance(QStringLiteral("-2147483647")) + 4);
    QApplication::setFont(before);
}

TEST(FormDialog, TheBoundsThemselvesAreTaken) {
    for (const char* text : {"1", "10"}) {
        OpenSample sample;
        sample.type("count", text);
        sample.dialog.accept();
        EXPECT_EQ(sample.dialog.result(), QDialog::Accepted);
        EXPECT_EQ(std::to_string(sample.count), text);
    }
}

TEST(FormDialog, TheFirstBadNumberIsToldAndThoseBeforeItAreTaken) {
    OpenSample sample;
    sample.type("count", "4");
    sample.type("length", "x");
    sample.person.atMessage(QStringLiteral("Please enter a number."));
    sample.dialog.accept();
    EXPECT_EQ(sample.count, 4);
    sample.type("length", "8");
    sample.dialog.accept();
    EXPECT_EQ(sample.dialog.result(), QDialog::Accepted);
    EXPECT_EQ(sample.changes, std::vector<std::string>({"count", "length"})) << "each is taken once";
}

TEST(FormDialog, ARefusalOfTheWholeNamesAFieldOfAnyKind) {
    for (const auto& [key, focus] : {std::pair{"looped", "looped"}, {"kind", "kind.1"}, {"none", "count"}}) {
        OpenSample sample;
        sample.form.confirm = [key = std::string(key)](DialogForm&) { return DialogRefusal{"No", key}; };
        sample.person.atMessage(QStringLiteral("No"));
        sample.dialog.accept();
        EXPECT_TRUE(sample.dialog.isVisible());
        EXPECT_EQ(sample.dialog.focusWidget()->objectName(), QString::fromLatin1(focus));
    }
}

// ---- Leaving a field ------------------------------------------------------------------------------------------------

TEST(FormDialog, AGoodNumberCountsAsItsFieldIsLeftOnce) {
    OpenSample sample;
    sample.type("count", " 5 ");
    sample.leave("count");
    EXPECT_EQ(sample.count, 5);
    EXPECT_EQ(sample.changes, std::vector<std::string>({"count"}));
    sample.leave("count");
    sample.leave("total");
    EXPECT_EQ(sample.changes.size(), 1U) << "nothing new was typed";
    sample.dialog.accept();
    EXPECT_EQ(sample.changes.size(), 1U);
}

TEST(FormDialog, AGoodNumberIsShownInPlainFormAsItsFieldIsLeft) {
    OpenSample sample;
    for (const char* text : {"05", "05", "06"}) {
        sample.type("count", text);
        sample.leave("count");
        EXPECT_EQ(sample.edit("count").text(), QString::number(sample.count)) << text;
    }
    EXPECT_EQ(sample.count, 6);
}

TEST(FormDialog, ABadNumberStaysAsTypedWithoutAWordUntilOk) {
    OpenSample sample;
    sample.type("count", "99");
    sample.leave("count");
    EXPECT_EQ(sample.edit("count").text(), QStringLiteral("99"));
    EXPECT_EQ(sample.count, 3);
    EXPECT_TRUE(sample.changes.empty());
    sample.person.atMessage(QStringLiteral("Please enter an integer between 1 and 10."));
    sample.dialog.accept();
    EXPECT_TRUE(sample.dialog.isVisible());
}

// ---- What is off ----------------------------------------------------------------------------------------------------

TEST(FormDialog, ALabelGoesOffWithItsField) {
    OpenSample sample;
    const auto label = [&](const char* key) {
        for (QLabel* found : sample.dialog.findChildren<QLabel*>()) {
            if (found->buddy() == &sample.edit(key)) {
                return found;
            }
        }
        return static_cast<QLabel*>(nullptr);
    };
    EXPECT_TRUE(label("count")->isEnabled());
    part<QRadioButton>(sample.dialog, "kind.2").click();
    EXPECT_FALSE(label("count")->isEnabled());
    EXPECT_TRUE(label("length")->isEnabled());
    part<QRadioButton>(sample.dialog, "kind.1").click();
    EXPECT_TRUE(label("count")->isEnabled());
}

TEST(FormDialog, AGroupThatIsOffHasNoChoices) {
    Sample sample;
    sample.form.find("kind")->on = false;
    sample.form.find("looped")->on = false;
    const FormDialog dialog(sample.form);
    for (const char* name : {"kind.1", "kind.2", "kind.3"}) {
        EXPECT_FALSE(part<QRadioButton>(dialog, name).isEnabled()) << name;
    }
    EXPECT_FALSE(part<QCheckBox>(dialog, "looped").isEnabled());
}

TEST(FormDialog, WhatIsOnlyShownLooksLikeTheGroundAndHasNoAccessKey) {
    Sample sample;
    const FormDialog dialog(sample.form);
    const QLineEdit& total = part<QLineEdit>(dialog, "total");
    EXPECT_EQ(total.palette().color(QPalette::Base), total.palette().color(QPalette::Window));
    const QLineEdit& count = part<QLineEdit>(dialog, "count");
    EXPECT_NE(count.palette().color(QPalette::Base), count.palette().color(QPalette::Window));
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        const bool marked = label->text().contains(QLatin1Char('&'));
        EXPECT_EQ(marked, label->buddy() == &count || label->buddy() == &part<QLineEdit>(dialog, "length"))
            << label->text().toStdString();
    }
}

// ---- The first focus ------------------------------------------------------------------------------------------------

TEST(FormDialog, TheFormSaysWhereTheFocusIsFirstUnlessThatIsOff) {
    for (const bool on : {true, false}) {
        Sample sample;
        sample.form.focus = "length";
        sample.form.find("length")->on = on;
        const FormDialog dialog(sample.form);
        EXPECT_EQ(dialog.focusWidget()->objectName(), on ? QStringLiteral("length") : QStringLiteral("count"));
    }
}

TEST(FormDialog, WithoutANumberToTypeTheFirstControlHasTheFocus) {
    std::int32_t kind = 2;
    bool looped = false;
    DialogForm radios;
    radios.fields = {radioField("kind", kind, {"One", "Two"}), checkField("looped", "Loop", looped)};
    EXPECT_EQ(FormDialog(radios).focusWidget()->objectName(), QStringLiteral("kind.2")) << "on the choice that is set";
    DialogForm checks;
    checks.fields = {checkField("looped", "Loop", looped)};
    EXPECT_EQ(FormDialog(checks).focusWidget()->objectName(), QStringLiteral("looped"));
}

TEST(FormDialog, TheTabKeyGoesThroughTheFieldsInTheirOrder) {
    OpenSample sample;
    std::vector<std::string> order;
    const QWidget* at = &sample.edit("count");
    do {
        if ((at->focusPolicy() & Qt::TabFocus) != 0 && at->isEnabled() && at->isVisible() &&
            !at->objectName().isEmpty()) {
            order.push_back(at->objectName().toStdString());
        }
        at = at->nextInFocusChain();
    } while (at != &sample.edit("count"));
    EXPECT_EQ(order, std::vector<std::string>({"count", "length", "looped", "kind.1", "kind.2"}));
}

// ---- Layout ---------------------------------------------------------------------------------------------------------

TEST(FormDialog, RadioGroupsStandThreeInARow) {
    std::int32_t value = 1;
    DialogForm form;
    for (const char* key : {"a", "b", "c", "d"}) {
        form.fields.push_back(radioField(key, value, {"One", "Two"}));
    }
    FormDialog dialog(form);
    dialog.show();
    QApplication::processEvents();
    const auto place = [&](const char* key) { return part<QGroupBox>(dialog, key).geometry(); };
    EXPECT_EQ(place("a").top(), place("b").top());
    EXPECT_EQ(place("a").top(), place("c").top());
    EXPECT_LT(place("a").right(), place("b").left());
    EXPECT_LT(place("b").right(), place("c").left());
    EXPECT_GT(place("d").top(), place("a").bottom());
}

TEST(FormDialog, NumbersStandOneToARowAndTheSizeIsFixed) {
    OpenSample sample;
    EXPECT_GT(sample.edit("length").geometry().top(), sample.edit("count").geometry().bottom());
    EXPECT_EQ(sample.edit("length").geometry().left(), sample.edit("count").geometry().left());
    EXPECT_EQ(sample.dialog.minimumSize(), sample.dialog.maximumSize());
    EXPECT_GT(sample.dialog.width(), sample.dialog.fontMetrics().horizontalAdvance(sample.dialog.windowTitle()) + 100)
        << "no title is cut";
}

TEST(FormDialog, ACheckBoxWithoutANumberBesideItStandsAlone) {
    bool first = false;
    bool second = false;
    double number = 1.0;
    DialogForm form;
    form.fields = {checkField("first", "First", first), checkField("second", "Second", second),
                   realField("number", "", number)};
    FormDialog dialog(form);
    dialog.show();
    QApplication::processEvents();
    EXPECT_LT(part<QCheckBox>(dialog, "first").geometry().bottom(), part<QCheckBox>(dialog, "second").geometry().top());
    EXPECT_LT(part<QCheckBox>(dialog, "second").geometry().right(),
              part<QLineEdit>(dialog, "number").geometry().left());
    part<QCheckBox>(dialog, "first").click();
    EXPECT_NE(dialog.focusWidget()->objectName(), QStringLiteral("second"));
}

TEST(FormDialog, GivesEachAccessKeyOnce) {
    RecordingUi ui;
    DocumentState document(ui, ".");
    for (const std::string& name : DialogValues::names()) {
        SCOPED_TRACE(name);
        auto form = document.dialogs->form(name);
        const FormDialog dialog(*form);
        QString seen;
        const auto take = [&seen](QString text) {
            const QString key = text.remove(QLatin1String("&&")).section(QLatin1Char('&'), 1, 1).left(1).toUpper();
            EXPECT_TRUE(key.isEmpty() || !seen.contains(key)) << text.toStdString();
            seen += key;
        };
        for (const QAbstractButton* button : dialog.findChildren<QAbstractButton*>()) {
            take(button->text());
        }
        for (const QLabel* label : dialog.findChildren<QLabel*>()) {
            if (label->buddy() != nullptr) {
                take(label->text());
            }
        }
    }
}

TEST(AccessKeys, TakeTheFirstLetterOfAWordThenAnyLetter) {
    AccessKeys keys(QStringLiteral("OC"));
    EXPECT_EQ(keys.mark(QStringLiteral("Number of points")), QStringLiteral("&Number of points"));
    EXPECT_EQ(keys.mark(QStringLiteral("Number of points")), QStringLiteral("Number of &points"));
    EXPECT_EQ(keys.mark(QStringLiteral("Compression")), QStringLiteral("Co&mpression")) << "C and O are taken";
    EXPECT_EQ(keys.mark(QStringLiteral("X 1")), QStringLiteral("&X 1"));
    EXPECT_EQ(keys.mark(QStringLiteral("X 1")), QStringLiteral("X &1"));
    EXPECT_EQ(keys.mark(QStringLiteral("X 1")), QStringLiteral("X 1")) << "none is left";
}

TEST(AccessKeys, OfAMenuAreGivenOnceTheFirstKeepsItsOwn) {
    EXPECT_EQ(withKeysOnce({"&Knife", "Copy", "&Keep", "&Extend", "&Key && lock"}),
              QStringList({"&Knife", "Copy", "Kee&p", "&Extend", "Key && &lock"}))
        << "E goes to the one that brings it along, wherever it stands";
    EXPECT_EQ(withKeysOnce({"&A", "&A"}), QStringList({"&A", "A"})) << "none is left";
}

TEST(AccessKeys, LeaveAmpersandsAndTheKeyThatATextHas) {
    AccessKeys keys{QString()};
    EXPECT_EQ(keys.mark(QStringLiteral("Rebre&ak...")), QStringLiteral("Rebre&ak..."));
    EXPECT_EQ(keys.mark(QStringLiteral("Angle")), QStringLiteral("A&ngle")) << "A went with the text before";
    EXPECT_EQ(keys.mark(QStringLiteral("Compress && Fit")), QStringLiteral("&Compress && Fit"));
    EXPECT_EQ(keys.mark(QString()), QString());
    EXPECT_EQ(keys.mark(QStringLiteral("% - +")), QStringLiteral("% - +"));
}

TEST(FormDialog, EveryDialogOfTheDocumentHasANamedControlForEveryField) {
    RecordingUi ui;
    DocumentState document(ui, ".");
    for (const std::string& name : DialogValues::names()) {
        SCOPED_TRACE(name);
        auto form = document.dialogs->form(name);
        ASSERT_TRUE(form.has_value());
        openDialog(*form);
        const FormDialog dialog(*form);
        for (const DialogField& field : form->fields) {
            const auto* control = dialog.findChild<QWidget*>(QString::fromStdString(field.key));
            ASSERT_NE(control, nullptr) << field.key;
            EXPECT_FALSE(control->accessibleName().isEmpty()) << field.key;
            if (const auto* edit = qobject_cast<const QLineEdit*>(control)) {
                EXPECT_FALSE(edit->toolTip().isEmpty()) << field.key;
            }
        }
        EXPECT_LE(dialog.sizeHint().height(), 700) << "higher than a small screen";
    }
}

} // namespace
} // namespace velmora::test
