#include "CRebreak.h"

#include <initializer_list>

namespace velmora {

namespace {

constexpr double largestNumber = 1000000.0;

void setLive(DialogForm& form, std::initializer_list<const char*> keys, bool on) {
    for (const char* key : keys) {
        form.find(key)->on = on;
    }
}

void setChoiceLive(DialogForm& form, const char* key, std::size_t choice, bool on) {
    form.find(key)->choiceOn[choice - 1] = on;
}

/// The stretch and the count follow the whole captured curve: nothing typed earlier may linger behind fields that
/// are off.
void takeWholeCurve(CRebreak& values) {
    values.law.firstPoint = 1;
    values.law.lastPoint = values.curveCount;
    values.law.newCount = values.curveCount;
}

void applyBlockRules(DialogForm& form, CRebreak& values) {
    const bool blockAllowed = values.blockCount >= 1 && values.regime == 2 && values.isApt;
    if (!blockAllowed) {
        values.useBlock = false;
    }
    if (values.useBlock) {
        values.law.fitToLawCurve = false;
    }
    form.find("useBlock")->on = blockAllowed;
}

void applyLiveFields(DialogForm& form, const CRebreak& values) {
    const bool one = values.regime == 1;
    setChoiceLive(form, "regime", 2, values.isApt);
    setChoiceLive(form, "style", 2, !values.useBlock);
    form.find("exactness")->on = !values.law.linear;
    form.find("compression")->on = !values.law.fitToLawCurve;
    form.find("capturedNumber")->on = one && values.isApt;
    setLive(form, {"newCount", "firstPoint", "lastPoint"}, !one || !values.lineMode);
    setLive(form, {"firstCurve", "lastCurve"}, !one && !values.lineMode);
    if (values.law.fitToLawCurve) {
        setLive(form, {"newCount", "firstPoint", "lastPoint", "capturedNumber", "firstCurve", "lastCurve"}, false);
    }
    if (values.useBlock) {
        setLive(form, {"firstPoint", "lastPoint", "firstCurve", "lastCurve"}, false);
    }
}

void refresh(DialogForm& form, CRebreak& values, std::string_view key) {
    const bool opening = key.empty();
    if (opening && !values.isApt) {
        values.regime = 1;
        values.law.fitToLawCurve = false;
    }
    applyBlockRules(form, values);
    const bool fixedByRegime = key == "regime" && values.regime == 1 && values.lineMode;
    const bool fixedByStyle = (key == "style" || opening) && values.law.fitToLawCurve;
    if (fixedByRegime || fixedByStyle) {
        takeWholeCurve(values);
    }
    applyLiveFields(form, values);
    if (opening && !values.isApt) {
        // Only the opening switches it off; the next refresh gives it back.
        setChoiceLive(form, "style", 2, false);
    }
}

} // namespace

DialogForm describe(CRebreak& values) {
    DialogForm form;
    form.name = "CRebreak";
    form.title = "Rebreak ";
    form.fields = {
        radioField("regime", values.regime, {"Captured section (line)", "All sections (lines)"}),
        radioField("function", values.law.linear, {"Spline", "Linear"}),
        radioField("style", values.law.fitToLawCurve, {"Compress points", "Fit to captured section"}),
        integerField("exactness", "Exactness %", values.law.exactness, 0, 100),
        integerField("newCount", "Number of points", values.law.newCount, 2, largestNumber),
        realField("compression", "Compression", values.law.compression, 0.0001, 10000),
        integerField("firstPoint", "First point", values.law.firstPoint, 1, largestNumber),
        integerField("lastPoint", "Last point", values.law.lastPoint, 1, largestNumber),
        inGroup(integerField("capturedNumber", "Captured", values.capturedNumber, 1, largestNumber),
                "Sections (lines)"),
        inGroup(integerField("firstCurve", "First", values.firstCurve, 1, largestNumber), "Sections (lines)"),
        inGroup(integerField("lastCurve", "Last", values.lastCurve, 1, largestNumber), "Sections (lines)"),
        shownOnly(integerField("patchNumber", "Patch", values.patchNumber, 1, largestNumber)),
        checkField("useBlock", "Block", values.useBlock),
    };
    form.refresh = [&values](DialogForm& self, std::string_view key) {
        refresh(self, values, key);
        if (values.tried) {
            values.tried(values);
        }
    };
    form.confirm = [&values](DialogForm&) {
        const double curves = values.useBlock ? values.blockCurves : values.regime == 2 ? values.patchCurves : 1;
        return refuseTooMany({{"newCount", values.law.newCount, 2, curves * values.room.bytesEach}}, values.room.free);
    };
    return form;
}

} // namespace velmora
