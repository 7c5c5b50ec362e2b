#include "status_texts.h"

#include <array>
#include <charconv>

namespace velmora {

namespace {

std::string number(std::int32_t fromZero) {
    return std::to_string(std::int64_t{fromZero} + 1);
}

} // namespace

std::string fixedText(double value) {
    std::array<char, 512> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, 6);
    return {buffer.data(), result.ptr};
}

std::string capturedPointText(bool line, const PointAddress& address, const zVec<double>& position) {
    return "Captured point: (Patch K=" + number(address.patch) + (line ? ", Line N=" : ", Section N=") +
           number(address.curve) + ", Point M=" + number(address.point) + ") X=" + fixedText(position.x) +
           ", Y=" + fixedText(position.y) + ", Z=" + fixedText(position.z);
}

std::string capturedSectionText(std::int32_t patch, std::int32_t section, std::int32_t points) {
    return "Captured section: Patch K=" + number(patch) + ", Section N=" + number(section) +
           ", Points M=" + std::to_string(points);
}

std::string capturedLineText(std::int32_t patch, std::int32_t line, std::int32_t points) {
    return "Captured line: Patch K=" + number(patch) + ", Line N=" + number(line) +
           ", Points M=" + std::to_string(points) + " ";
}

std::string inputtedLineText(std::int32_t patch, std::int32_t line) {
    return "Captured line: Patch K=" + number(patch) + ", Line N=" + number(line) + curveContinueClause;
}

std::string capturedPatchText(std::int32_t patch) {
    return "Captured patch: Patch K=" + number(patch) + pointContinueClause;
}

} // namespace velmora
