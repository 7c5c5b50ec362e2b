#include "CRebreakPart.h"

namespace velmora {

namespace {

constexpr double largestNumber = 100000.0;

void refresh(DialogForm& form, CRebreakPart& values, std::string_view key) {
    if (!values.isApt) {
        values.regime = 1;
    }
    const bool fixedCount = values.lineMode && values.regime == 1;
    // What was typed must not linger behind a field that is off: a single line keeps its number of sections.
    if (key == "position" || (key == "style" && values.law.fit) || (key == "regime" && fixedCount)) {
        fillStretch(values);
    }
    form.find("regime")->choiceOn[1] = values.isApt;
    form.find("exactness")->on = !values.law.linear;
    form.find("newCount")->on = !fixedCount;
}

} // namespace

void fillStretch(CRebreakPart& values) {
    PartLaw& law = values.law;
    law.firstPoint = law.after ? values.pointNumber : 1;
    law.lastPoint = law.after ? values.curveLength : values.pointNumber;
    law.newCount = law.lastPoint - law.firstPoint + 1;
}

DialogForm describe(CRebreakPart& values) {
    DialogForm form;
    form.name = "CRebreakPart";
    form.title = "Rebreak Part";
    DialogField position = radioField("position", values.law.after, {"Before", "After"});
    position.label = "Position";
    form.fields = {
        radioField("regime", values.regime, {"Captured section (line)", "All sections (lines)"}),
        radioField("function", values.law.linear, {"Spline", "Linear"}),
        radioField("style", values.law.fit, {"Compress points", "Compress && Fit"}),
        position,
        integerField("exactness", "Exactness %", values.law.exactness, 0, 100),
        integerField("newCount", "Number of points", values.law.newCount, 2, largestNumber),
        realField("compression", "Compression", values.law.compression, 0.0001, 10000),
        shownOnly(integerField("firstPoint", "First point", values.law.firstPoint, 1, largestNumber)),
        shownOnly(integerField("lastPoint", "Last point", values.law.lastPoint, 1, largestNumber)),
    };
    form.refresh = [&values](DialogForm& self, std::string_view key) { refresh(self, values, key); };
    return form;
}

} // namespace velmora
