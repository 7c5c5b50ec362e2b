// Any bytes as an .skl file: reading them ends without harm, and a model read from them and saved reads again as the
// same model.

#include "fuzz_files.h"
#include "skl.h"

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::OutputFolder folder;
    const fuzz::InputFile input(data, size);
    PatchList patches;
    const SklReadResult result = readSkl(input.path(), patches);
    fuzz::require(result.opened && result.endReached == result.faults.empty());
    fuzz::require(result.pointsRead == pointTotal(patches));
    fuzz::require(writeSkl(folder / "again.skl", patches, 16).written);
    PatchList again;
    fuzz::require(readSkl(folder / "again.skl", again).endReached);
    fuzz::require(again == patches);
    return 0;
}
