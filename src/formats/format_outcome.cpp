#include "format_outcome.h"

namespace velmora {

std::string faultMessage(const FormatFault& fault, std::string_view headerText, std::string_view bodyText) {
    if (fault.kind == FormatFaultKind::CannotOpen) {
        return std::string(cannotOpenMessage);
    }
    if (fault.kind == FormatFaultKind::Unread) {
        return std::string(readFailedMessage);
    }
    const std::string_view text = fault.kind == FormatFaultKind::Header ? headerText : bodyText;
    return std::string(text) + std::to_string(fault.compartment);
}

std::string lineText(TextStream& stream) {
    return "line " + std::to_string(stream.lineOf(stream.tell()));
}

std::string unreadText(TextStream& stream) {
    return "The system could not read the file behind " + lineText(stream);
}

void beginRecord(FileRead& record, const std::filesystem::path& path, const TextStream& stream, std::string_view format,
                 const std::vector<std::string>& kinds) {
    record = {};
    record.path = path;
    record.identity = stream.identity();
    record.bytes = static_cast<std::uintmax_t>(stream.size());
    record.format = format;
    record.countFromZero(kinds);
}

void noteJoinedNumbers(FileRead& record, TextStream& stream) {
    if (stream.joinedNumbers() > 0) {
        record.losesGeometry(
            "Numbers that run into the next one and were taken for two: " + std::to_string(stream.joinedNumbers()) +
            ", the first in line " + std::to_string(stream.lineOf(stream.firstJoinedNumber())));
    }
}

void noteThinning(FileRead& record, bool thinned, bool cutAtLimit) {
    record.thinned = thinned || cutAtLimit;
    const std::string counts = keptText("points", countOf(record.found, "points"), countOf(record.kept, "points"));
    if (thinned) {
        record.alters(counts + " (the model is thinned)");
    }
    if (cutAtLimit) {
        record.alters(counts + " (the limit of points is reached)");
    }
}

} // namespace velmora
