#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmora {

/// What can go wrong with a geometry file that is read.
enum class FormatFaultKind {
    CannotOpen,
    Header,    ///< counts that cannot be used
    Body,      ///< a line or a point that cannot be read
    Variables, ///< a list of variables that cannot be used; of field files alone
};

/// One thing that went wrong, and where.
struct FormatFault {
    FormatFaultKind kind = FormatFaultKind::CannotOpen;
    std::int64_t compartment = 0; ///< counted from 1; 0 when the reading did not come to one
    int pass = 1;                 ///< the pass over the file in which it was met, 1 or 2

    friend bool operator==(const FormatFault&, const FormatFault&) = default;
};

inline constexpr std::string_view cannotOpenMessage = "It is impossible to open selected file";
inline constexpr std::string_view cannotSaveMessage = "It is impossible to save current file";

/// The text for the user when the two other texts are those of one format: `cannotOpenMessage`, or the format's text
/// with the number of the compartment behind it.
std::string faultMessage(const FormatFault& fault, std::string_view headerText, std::string_view bodyText);

} // namespace velmora
