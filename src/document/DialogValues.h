#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CBeforeAfter.h"
#include "CBlockMove.h"
#include "CBlockRotate.h"
#include "CColours.h"
#include "CCompare.h"
#include "CConvert_SKL_to_APT.h"
#include "CConvert_to_SKL.h"
#include "CCorrectLine.h"
#include "CExport.h"
#include "CExtrapolation.h"
#include "CFeatures.h"
#include "CFirstPoint.h"
#include "CFlipBlock.h"
#include "CImport.h"
#include "CInterpolate.h"
#include "CIntersection.h"
#include "CLast_First_switch.h"
#include "CMerge.h"
#include "CPicture.h"
#include "CPrescribe.h"
#include "CRebreak.h"
#include "CRebreakPart.h"
#include "CRegularFind.h"
#include "CRegularInput.h"
#include "CScaling.h"
#include "CSmooth.h"
#include "CUKnife.h"
#include "Cduplicate.h"
#include "dlgEditPoint.h"
#include "dlgFilesList.h"
#include "dlgViewing.h"
#include "input_dialogs.h"

namespace velmora {

/// The values of all dialogs: what was typed in one is its next default.
struct DialogValues {
    /// The point table works on `patches`, the project list in `documentsFolder`.
    DialogValues(PatchList& patches, UserInterface& ui, const std::filesystem::path& documentsFolder);

    Cduplicate duplicate;
    CRebreak rebreak;
    CRebreakPart rebreakPart;
    CInputPatch inputPatch;
    CInputSection inputSection;
    CInputLine inputLine;
    CFeatures features;
    CBeforeAfter beforeAfter;
    dlgEditPoint editPoint;
    dlgViewing viewing;
    CRegularFind regularFind;
    CScaling scaling;
    CBlockMove move;
    CBlockRotate rotate;
    CFlipBlock flip;
    CSymmetricBlock symmetric;
    CLast_First_switch lastFirst;
    CFirstPoint firstPoint;
    CExtrapolation extrapolation;
    CPrescribe prescribe;
    CMerge merge;
    CSmooth smooth;
    CInterpolate interpolate;
    CCorrectLine correctLine;
    CConvert_to_SKL toSkl;
    CConvert_SKL_to_APT toApt;
    CUKnife knife;
    CIntersection intersection;
    CCompare compare;
    CColours colours;
    CImport importing;
    CExport exporting;
    CPicture picture;

    // Two have a widget of their own and no form.
    CRegularInput regularInput;
    dlgFilesList filesList; ///< the project list, which no command opens

    /// Who plots curves is told here what the values of an open dialog would make of the captured one.
    std::function<void(const PointList& curve)> onCurveTried;

    /// The form over the values of the dialog of that class name; none for an unknown name.
    std::optional<DialogForm> form(std::string_view name);
    /// The class names that `form` knows.
    static std::vector<std::string> names();
};

} // namespace velmora
