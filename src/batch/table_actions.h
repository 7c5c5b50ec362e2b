#pragma once

#include <string_view>

#include "CRegularInput.h"
#include "ScriptFailure.h"

namespace velmora {

/// Carries out one action of the point table, as a person would: "inputAfter X Y Z", "replace X Y Z", "cut", "copy",
/// "paste on", "paste off", "newPatch X Y Z", "newLine X Y Z", "find K N M" or "select M". With paste on, the first two
/// take no numbers. Refused: an action that is off, wrong words, a row that is not there; nothing changes then.
MaybeFailure performTableAction(CRegularInput& table, std::string_view action);

} // namespace velmora
