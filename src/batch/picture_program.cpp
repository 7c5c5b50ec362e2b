#include "picture_program.h"

#include "frame_stream.h"
#include "reading_child.h"

namespace velmora {

namespace {

constexpr const char* programName = "velmora-picture";

bool drawByProgram(const SceneFrame& frame, const PictureSettings& settings, const std::filesystem::path& file) {
    bool sent = false;
    const ChildEnd end = feedChild({helperProgram(programName).string(), std::filesystem::absolute(file).string()},
                                   [&](const SendBytes& send) { sent = writeFrame(frame, settings, send); });
    return sent && end == ChildEnd::Whole;
}

bool programDraws() {
    return feedChild({helperProgram(programName).string(), "--try"}, [](const SendBytes&) {}) == ChildEnd::Whole;
}

} // namespace

DrawPixels programDrawer() {
    static const bool draws = programDraws();
    return draws ? DrawPixels(drawByProgram) : DrawPixels();
}

} // namespace velmora
