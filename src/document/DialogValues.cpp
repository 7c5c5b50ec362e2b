#include "DialogValues.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace velmora {

namespace {

struct StoredDialog {
    const char* name;
    DialogForm (*form)(DialogValues& values);
};

template <auto member>
DialogForm formOf(DialogValues& values) {
    return describe(values.*member);
}

constexpr auto storedDialogs = std::to_array<StoredDialog>({
    {"Cduplicate", formOf<&DialogValues::duplicate>},
    {"CRebreak", formOf<&DialogValues::rebreak>},
    {"CInputPatch", formOf<&DialogValues::inputPatch>},
    {"CInputSection", formOf<&DialogValues::inputSection>},
    {"CInputLine", formOf<&DialogValues::inputLine>},
    {"CFeatures", formOf<&DialogValues::features>},
    {"CBeforeAfter", formOf<&DialogValues::beforeAfter>},
    {"dlgEditPoint", formOf<&DialogValues::editPoint>},
    {"dlgViewing", formOf<&DialogValues::viewing>},
    {"CRegularFind", formOf<&DialogValues::regularFind>},
    {"CScaling", formOf<&DialogValues::scaling>},
    {"CBlockMove", formOf<&DialogValues::move>},
    {"CBlockRotate", formOf<&DialogValues::rotate>},
    {"CFlipBlock", formOf<&DialogValues::flip>},
    {"CSymmetricBlock", formOf<&DialogValues::symmetric>},
    {"CLast_First_switch", formOf<&DialogValues::lastFirst>},
    {"CFirstPoint", formOf<&DialogValues::firstPoint>},
    {"CExtrapolation", formOf<&DialogValues::extrapolation>},
    {"CPrescribe", formOf<&DialogValues::prescribe>},
    {"CRebreakPart", formOf<&DialogValues::rebreakPart>},
    {"CMerge", formOf<&DialogValues::merge>},
    {"CSmooth", formOf<&DialogValues::smooth>},
    {"CInterpolate", formOf<&DialogValues::interpolate>},
    {"CCorrectLine", formOf<&DialogValues::correctLine>},
    {"CConvert_to_SKL", formOf<&DialogValues::toSkl>},
    {"CConvert_SKL_to_APT", formOf<&DialogValues::toApt>},
    {"CUKnife", formOf<&DialogValues::knife>},
    {"CIntersection", formOf<&DialogValues::intersection>},
    {"CCompare", formOf<&DialogValues::compare>},
    {"CColours", formOf<&DialogValues::colours>},
    {"CImport", formOf<&DialogValues::importing>},
    {"CExport", formOf<&DialogValues::exporting>},
    {"CPicture", formOf<&DialogValues::picture>},
});

} // namespace

DialogValues::DialogValues(PatchList& patches, UserInterface& ui, const std::filesystem::path& documentsFolder)
    : regularInput(patches), filesList(ui, documentsFolder) {
    for (const char* extension : {"apt", "skl", "dat", "vrml", "apm"}) {
        filesList.names.add(extension);
    }
}

std::optional<DialogForm> DialogValues::form(std::string_view name) {
    const auto found = std::find_if(storedDialogs.begin(), storedDialogs.end(),
                                    [name](const StoredDialog& dialog) { return dialog.name == name; });
    return found != storedDialogs.end() ? std::optional(found->form(*this)) : std::nullopt;
}

std::vector<std::string> DialogValues::names() {
    std::vector<std::string> names;
    std::transform(storedDialogs.begin(), storedDialogs.end(), std::back_inserter(names),
                   [](const StoredDialog& dialog) { return dialog.name; });
    return names;
}

} // namespace velmora
