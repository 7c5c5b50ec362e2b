#include "CRegularFind.h"

#include <algorithm>

namespace velmora {

namespace {

std::int32_t clampTo(std::int32_t number, std::int32_t maximum) {
    return std::max(std::min(number, maximum), 1);
}

/// Takes the maxima from the list, from the patch on; each number is brought into its range before the next counts.
void clampNumbers(CRegularFind& values, const PatchList& list) {
    values.Kmax = countOf(list);
    values.K = clampTo(values.K, values.Kmax);
    values.Nmax = values.Mmax = 0;
    if (values.K <= values.Kmax) {
        const Patch& patch = list[static_cast<std::size_t>(values.K - 1)];
        values.Nmax = countOf(patch);
        values.N = clampTo(values.N, values.Nmax);
        if (values.N <= values.Nmax) {
            values.Mmax = countOf(patch[static_cast<std::size_t>(values.N - 1)]);
        }
    }
    values.M = clampTo(values.M, values.Mmax);
}

} // namespace

DialogForm describe(CRegularFind& values, const PatchList* list) {
    DialogForm form;
    form.name = "CRegularFind";
    form.title = "Find";
    form.fields = {
        integerField("K", "K", values.K),
        integerField("N", "N", values.N),
        integerField("M", "M", values.M),
        shownOnly(integerField("Kmax", "Kmax", values.Kmax)),
        shownOnly(integerField("Nmax", "Nmax", values.Nmax)),
        shownOnly(integerField("Mmax", "Mmax", values.Mmax)),
    };
    form.focus = "M";
    form.refresh = [&values, list](DialogForm& self, std::string_view) {
        if (list != nullptr) {
            clampNumbers(values, *list);
        }
        self.find("K")->on = !values.patchHeld && !values.sectionHeld && !values.lineHeld;
        self.find("N")->on = !values.sectionHeld;
        self.find("M")->on = !values.lineHeld;
    };
    return form;
}

} // namespace velmora
