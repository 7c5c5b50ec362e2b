// Any bytes as an .apt file: reading them ends without harm, and a model read from them and saved reads again as the
// same model.

#include "apt.h"
#include "fuzz_files.h"

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::OutputFolder folder;
    const fuzz::InputFile input(data, size);
    PatchList patches;
    const AptReadResult result = readApt(input.path(), patches);
    // A header fault of the first pass alone does not keep the second one from the end.
    const bool lastPassFailed = !result.faults.empty() &&
                                (result.faults.back().pass == 2 || result.faults.back().kind == FormatFaultKind::Body);
    fuzz::require(result.opened && result.endReached != lastPassFailed);
    fuzz::require(result.pointsKept == pointTotal(patches));
    if (result.thinned) {
        return 0; // sections may differ in length
    }
    fuzz::require(writeApt(folder / "again.apt", patches, 16).written);
    PatchList again;
    fuzz::require(readApt(folder / "again.apt", again).endReached);
    fuzz::require(again == patches);
    return 0;
}
