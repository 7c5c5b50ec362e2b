#pragma once

#include <QDialog>
#include <QTimer>
#include <vector>

#include "AccessKeys.h"
#include "DialogForm.h"

class QAbstractButton;
class QButtonGroup;
class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QVBoxLayout;

namespace velmora {

/// The width at which a number of 17 digits with sign and exponent is seen whole.
int widthOfReals(const QLineEdit& edit);

/// Makes a number look like the dialog's ground: nothing can be typed here.
void lookReadOnly(QLineEdit& edit);

/// Shows any parameter dialog. The form holds the values and the rules; this only shows them and passes on what is
/// typed and clicked. Every control is named after the key of its field, choice n of a radio group "key.n".
class FormDialog : public QDialog {
    Q_OBJECT

public:
    /// `form` must outlive the dialog and have been opened.
    explicit FormDialog(DialogForm& form, QWidget* parent = nullptr);
    ~FormDialog() override;

    /// OK: takes what was typed, then asks the form. A refusal is told and keeps the dialog open.
    void accept() override;

protected:
    /// What the form tries out is shown from the beginning, and the dialog stands beside it.
    void showEvent(QShowEvent* event) override;

private:
    /// The widgets of one field; those that its kind does not have are null.
    struct Control {
        std::string key;
        QLabel* label = nullptr; ///< null for a number without one
        QLineEdit* edit = nullptr;
        QCheckBox* check = nullptr;
        QGroupBox* frame = nullptr;
        QButtonGroup* choices = nullptr;
        QString shown; ///< the text that the form gave last; another one is typed and not taken yet
    };
    using Fields = std::vector<const DialogField*>;

    void placeFields(QVBoxLayout& column, const Fields& fields, bool insideFrame);
    void placeFrame(QVBoxLayout& column, const Fields& fields);
    void placeRadios(QVBoxLayout& column, const Fields& fields);
    void placeNumbers(QVBoxLayout& column, const Fields& fields);
    void placeCheck(QVBoxLayout& column, const DialogField& field);
    void placeChecksWithNumbers(QVBoxLayout& column, const Fields& fields);
    QLineEdit* makeEdit(const DialogField& field, const QString& name);
    QCheckBox* makeCheck(const DialogField& field);
    QGroupBox* makeRadios(const DialogField& field);

    void finishClicks();
    void focusOnNumberOf(const std::string& key);
    void click(const std::string& key, const std::string& text);
    void takeSilently(const std::string& key);
    void tellTried();
    bool showsOnlyTaken(const Control* but) const;
    void awaitMoreTyping(const std::string& key);
    void tryTyped();
    std::optional<DialogRefusal> takeTyped();
    void showForm();
    void showField(Control& control, const DialogField& field);
    void tell(const DialogRefusal& refusal);
    void focusOn(const std::string& key);
    void focusOnFirst();
    Control* control(const std::string& key);

    DialogForm& form_;
    bool wasShown_ = false;
    QTimer typing_;           ///< runs while a number is being typed
    std::string typedKey_;    ///< the field of that number
    bool triesTyped_ = false; ///< what is shown is tried with a number that the form does not hold
    AccessKeys keys_;
    std::vector<Control> controls_;
};

} // namespace velmora
