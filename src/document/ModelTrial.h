#pragma once

#include <cstdint>
#include <functional>

#include "PatchList.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "show_dialog.h"
#include "zRegion.h"

namespace velmora {

/// Shows the model as a command would leave it while the command's dialog is open. The model itself stands aside
/// meanwhile, untouched, and is back at the latest when the object goes: whatever was tried, Cancel finds it as it was,
/// and OK runs the command on it.
class ModelTrial {
public:
    /// A model of more points is not tried: to make it, to list it anew and to draw it by the processor would take more
    /// than a tenth of a second together, and the dialog would no longer follow the hand.
    static constexpr std::int64_t mostPoints = 200'000;

    /// `doc` must outlive the object.
    explicit ModelTrial(VelmoraDoc& doc);
    ModelTrial(const ModelTrial&) = delete;
    ModelTrial& operator=(const ModelTrial&) = delete;
    ~ModelTrial();

    /// Shows what `work` makes of a copy of the model, which stands in the document's place: it changes patches and
    /// zones, nothing else. Where it gives false, throws, or makes numbers that are not finite the model itself is
    /// shown. So it is from then on when the work took more than a tenth of a second.
    void show(const std::function<bool()>& work);
    /// Shows the model itself.
    void putBack();
    /// The model and what is tried change places, unseen.
    void exchange();

private:
    bool make(const std::function<bool()>& work);

    VelmoraDoc& doc_;
    bool possible_;
    bool shown_ = false;
    PatchList aside_;
    zRegion_fe zonesAside_;
};

/// Whoever plots the captured curve shows `curve` instead, as what is tried makes of it. An empty one changes nothing.
void plotTried(VelmoraDoc& doc, const PointList& curve);

/// Plots the captured curve as the model has it again.
void plotUntried(VelmoraDoc& doc);

/// Shows the form as showDialog does, and whenever a person set one of its fields what `tryOut` makes of the model. It
/// takes the values and gives false where there is nothing to show. `plot` plots what can be told without it, of a
/// model that is too large, too.
template <class Values, class TryOut>
bool showDialogTrying(VelmoraDoc& doc, Values& values, const TryOut& tryOut,
                      const std::function<void(const Values&)>& plot = {}) {
    ModelTrial trial(doc);
    return showPrepared(doc.ui(), values, [&](DialogForm& form, const Values& working) {
        form.tried = [&trial, &tryOut, &plot, &working, &doc](bool good) {
            if (!good) {
                trial.putBack();
                plotUntried(doc);
                return;
            }
            trial.show([&] { return tryOut(working); });
            if (plot) {
                plot(working);
            }
        };
    });
}

} // namespace velmora
