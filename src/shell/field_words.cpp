#include "field_words.h"

#include "qt_text.h"

namespace velmora {

namespace {

/// The decimal point is told apart from the comma, which many keyboards offer in its place.
const QString decimalPoint = QStringLiteral("decimals stand behind a point, as in 0.5");

bool isReal(const DialogField& field) {
    return field.kind == FieldKind::Real;
}

/// A limit as it would be typed.
QString limitText(const DialogField& field, double limit) {
    return isReal(field) ? qtText(numberText(limit)) : QString::number(static_cast<qint64>(limit));
}

QString rangeOf(const DialogField& field) {
    if (field.minimum && field.maximum) {
        return QStringLiteral(" between %1 and %2")
            .arg(limitText(field, *field.minimum), limitText(field, *field.maximum));
    }
    if (field.minimum) {
        return QStringLiteral(" from %1 on").arg(limitText(field, *field.minimum));
    }
    return field.maximum ? QStringLiteral(" up to %1").arg(limitText(field, *field.maximum)) : QString();
}

} // namespace

QString valuesOf(const DialogField& field) {
    if (field.readOnly) {
        return QStringLiteral("Shown only");
    }
    return (isReal(field) ? QStringLiteral("A number") : QStringLiteral("An integer")) + rangeOf(field);
}

void nameField(QMessageBox& box, const DialogField& field) {
    QString text = QStringLiteral("The field is \"%1\".").arg(qtText(field.label.empty() ? field.key : field.label));
    const bool isWhole = field.kind == FieldKind::Integer;
    const bool isTold = field.minimum && field.maximum; // both ends stand in the text of the box
    if (isWhole && !isTold) {
        text += QStringLiteral(" It takes %1.").arg(valuesOf(field).toLower());
    } else if (isReal(field)) {
        text += QStringLiteral(" It takes %1; %2.").arg(valuesOf(field).toLower(), decimalPoint);
    }
    box.setInformativeText(text);
}

} // namespace velmora
