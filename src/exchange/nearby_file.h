#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// The path of a file that another one names, if it stands in the other's folder or below it: no absolute path, no
/// address, no "..", no link that leads out of the folder.
std::optional<std::filesystem::path> nearbyFile(const std::filesystem::path& folder, std::string_view name);

/// A name as it stands in an address: "%20" and its like become the bytes that they mean.
std::string percentDecoded(std::string_view text);

} // namespace velmora
