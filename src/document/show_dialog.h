#pragma once

#include <utility>

#include "DialogForm.h"
#include "UserInterface.h"

namespace velmora {

/// Shows the form over a copy of `values` and takes the copy on OK; true for OK.
template <class Values, class... Context>
bool showDialog(UserInterface& ui, Values& values, Context&&... context) {
    Values working = values;
    DialogForm form = describe(working, std::forward<Context>(context)...);
    openDialog(form);
    if (!ui.showDialog(form)) {
        return false;
    }
    values = working;
    return true;
}

/// The same; `prepare` gets the form with its working values before it is opened.
template <class Values, class Prepare>
bool showPrepared(UserInterface& ui, Values& values, const Prepare& prepare) {
    Values working = values;
    DialogForm form = describe(working);
    prepare(form, working);
    openDialog(form);
    if (!ui.showDialog(form)) {
        return false;
    }
    values = working;
    return true;
}

} // namespace velmora
