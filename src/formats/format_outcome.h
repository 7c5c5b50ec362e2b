#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "FileRecord.h"
#include "TextStream.h"

namespace velmora {

/// What can go wrong with a geometry file that is read.
enum class FormatFaultKind {
    CannotOpen,
    Header,    ///< counts that cannot be used
    Body,      ///< a line or a point that cannot be read
    Variables, ///< a list of variables that cannot be used; of field files alone
    Unread,    ///< the system failed to read the file; what stands behind that place is not known
};

/// One thing that went wrong, and where.
struct FormatFault {
    FormatFaultKind kind = FormatFaultKind::CannotOpen;
    std::int64_t compartment = 0; ///< counted from 1; 0 when the reading did not come to one
    int pass = 1;                 ///< the pass over the file in which it was met, 1 or 2

    friend bool operator==(const FormatFault&, const FormatFault&) = default;
};

inline constexpr std::string_view cannotOpenMessage = "It is impossible to open selected file";
inline constexpr std::string_view readFailedMessage =
    "The file could not be read to its end: the system reports an error";
inline constexpr std::string_view cannotSaveMessage = "It is impossible to save current file";

/// The text for the user when the two other texts are those of one format: `cannotOpenMessage`, `readFailedMessage`, or
/// the format's text with the number of the compartment behind it.
std::string faultMessage(const FormatFault& fault, std::string_view headerText, std::string_view bodyText);

// What the readers of text files tell alike of the file that they have read, see FileRead.

/// "line 12", where the stream stands.
std::string lineText(TextStream& stream);

/// That the system could not read on, and where.
std::string unreadText(TextStream& stream);

/// Path, bytes and format, and the kinds that the format counts.
void beginRecord(FileRead& record, const std::filesystem::path& path, const TextStream& stream, std::string_view format,
                 const std::vector<std::string>& kinds);

/// Tells of numbers that run into one another: the points behind them are not where the file has them.
void noteJoinedNumbers(FileRead& record, TextStream& stream);

/// Tells of points that were left out to thin the model, or at the limit.
void noteThinning(FileRead& record, bool thinned, bool cutAtLimit);

} // namespace velmora
