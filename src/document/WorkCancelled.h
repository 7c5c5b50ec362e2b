#pragma once

namespace velmora {

/// Passes through a command that the user gives up while it is at work. It is no std::exception: those are taken for
/// faults of files on the way.
struct WorkCancelled {};

} // namespace velmora
