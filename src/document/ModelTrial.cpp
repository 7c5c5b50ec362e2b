#include "ModelTrial.h"

#include <chrono>
#include <exception>
#include <utility>

#include "DialogValues.h"
#include "captured_curve.h"
#include "finite_model.h"

namespace velmora {

namespace {

std::int64_t pointsOf(const VelmoraDoc& doc) {
    std::int64_t count = pointTotal(doc.patches);
    for (const auto& zone : doc.feRegion.blocks) {
        count += zone->nodeCount;
    }
    return count;
}

} // namespace

ModelTrial::ModelTrial(VelmoraDoc& doc) : doc_(doc), possible_(pointsOf(doc) <= mostPoints) {
    doc_.setTrial(this);
}

ModelTrial::~ModelTrial() {
    doc_.setTrial(nullptr);
    try {
        putBack();
    } catch (const std::exception&) {
        // The model is back; the next paint shows it.
    }
}

void ModelTrial::exchange() {
    if (shown_) {
        doc_.patches.swap(aside_);
        std::swap(doc_.feRegion, zonesAside_);
    }
}

void ModelTrial::putBack() {
    if (shown_) {
        exchange();
        shown_ = false;
        doc_.redrawTrial();
    }
}

void ModelTrial::show(const std::function<bool()>& work) {
    constexpr std::chrono::milliseconds patience{100};
    const bool wasShown = shown_;
    exchange();
    shown_ = false;
    if (possible_) {
        const auto begin = std::chrono::steady_clock::now();
        shown_ = make(work);
        possible_ = std::chrono::steady_clock::now() - begin <= patience;
        if (!possible_) {
            exchange();
            shown_ = false;
        }
    }
    if (shown_ || wasShown) {
        doc_.redrawTrial();
    }
}

/// Nothing that goes wrong here counts: the command itself will tell of it.
bool ModelTrial::make(const std::function<bool()>& work) {
    bool made = false;
    try {
        aside_ = doc_.patches;
        zonesAside_ = {};
        copyRegion(doc_.feRegion, zonesAside_);
    } catch (const std::exception&) {
        return false;
    }
    // The copy is what is changed; the model itself is the one that stands aside.
    shown_ = true;
    exchange();
    try {
        made = work() && isFinite(doc_.patches) && isFinite(doc_.feRegion);
    } catch (const std::exception&) {
        made = false;
    }
    if (!made) {
        exchange();
    }
    return made;
}

void plotTried(VelmoraDoc& doc, const PointList& curve) {
    if (doc.dialogs->onCurveTried && !curve.empty()) {
        // The curve as it stands is plotted behind.
        doc.withoutTrial([&] { doc.dialogs->onCurveTried(curve); });
    }
}

void plotUntried(VelmoraDoc& doc) {
    plotTried(doc, curveIsThere(doc) ? capturedCurvePoints(doc) : PointList());
}

} // namespace velmora
