// Any bytes as a file of points and as one of marker shifts: reading them ends without harm, and points read from them
// and saved read again as the same points.

#include "fuzz_files.h"
#include "point_files.h"

using namespace velmora;

namespace {

void checkPoints(const std::filesystem::path& input, const std::filesystem::path& output) {
    const PointFileResult result = readPointFile(input);
    fuzz::require(result.opened);
    fuzz::require(writeLineBuffer(output, result.points, 16).written);
    fuzz::require(readPointFile(output).points == result.points);
}

void checkShifts(const std::filesystem::path& input) {
    const SftResult result = readSft(input);
    fuzz::require(result.opened && result.points.size() == result.targets.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::OutputFolder folder;
    const fuzz::InputFile input(data, size);
    checkPoints(input.path(), folder / "again.ext");
    checkShifts(input.path());
    return 0;
}
