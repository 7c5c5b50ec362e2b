#include "format_outcome.h"

namespace velmora {

std::string faultMessage(const FormatFault& fault, std::string_view headerText, std::string_view bodyText) {
    if (fault.kind == FormatFaultKind::CannotOpen) {
        return std::string(cannotOpenMessage);
    }
    const std::string_view text = fault.kind == FormatFaultKind::Header ? headerText : bodyText;
    return std::string(text) + std::to_string(fault.compartment);
}

} // namespace velmora
