#pragma once

#include <filesystem>
#include <functional>
#include <istream>
#include <vector>

namespace velmora {

/// Lists the places that stand for drives, the root first.
using VolumeList = std::function<std::vector<std::filesystem::path>()>;

/// The root and the folders on which the machine has mounted disks, sticks and shares, in the order of mounting.
std::vector<std::filesystem::path> mountedVolumes();

/// The same from a table of mounts as the system writes it: a line each with device, folder and type. Lines that are
/// no such ones, and mounts that hold no files of a user, are passed over; no folder comes twice.
std::vector<std::filesystem::path> volumesOf(std::istream& mounts);

} // namespace velmora
