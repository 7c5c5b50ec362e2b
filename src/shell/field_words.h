#pragma once

#include <QMessageBox>

#include "DialogForm.h"

namespace velmora {

/// What a number takes: "An integer between 1 and 10", "A number from 0 on", or what it shows when nothing can be
/// typed.
QString valuesOf(const DialogField& field);

/// Adds to the box of a refusal which field it means, what that takes where the text does not tell it already, and how
/// decimals are written.
void nameField(QMessageBox& box, const DialogField& field);

} // namespace velmora
