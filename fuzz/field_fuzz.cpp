// Any bytes as a field file: reading them ends without harm, and a model read from them and saved reads again as the
// same model.

#include "field_file.h"
#include "fuzz_files.h"

using namespace velmora;

namespace {

constexpr std::int64_t mostBareSections = 10'000; // more take long and reach nothing new

std::int64_t sectionTotal(const PatchList& patches) {
    std::int64_t sections = 0;
    for (const Patch& patch : patches) {
        sections += countOf(patch);
    }
    return sections;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::OutputFolder folder;
    const fuzz::InputFile input(data, size);
    const FieldReadResult result = readFieldFile(input.path());
    fuzz::require(result.opened && result.loaded == result.faults.empty());
    fuzz::require(result.loaded || (result.patches.empty() && result.fieldPatches.empty()));
    fuzz::require(result.fieldCount >= 0 && result.fieldCount <= maxFieldCount);
    fuzz::require(pointTotal(result.patches) == pointTotal(result.fieldPatches));
    if (!result.loaded || sectionTotal(result.patches) > mostBareSections) {
        return 0;
    }
    fuzz::require(writeFieldFile(folder / "again.dat", result.patches, result.fieldPatches, result.fieldCount,
                                 result.titleLine, result.variablesLine, 16)
                      .written);
    const FieldReadResult again = readFieldFile(folder / "again.dat");
    // Behind a variables line that fills its buffer the first reading ended; the text of the buffer does not.
    fuzz::require(again.loaded && again.fieldCount == result.fieldCount);
    fuzz::require(again.titleLine == result.titleLine && again.variablesLine == result.variablesLine);
    fuzz::require(again.patches == result.patches && again.fieldPatches == result.fieldPatches);
    return 0;
}
