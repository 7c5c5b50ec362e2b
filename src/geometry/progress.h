#pragma once

#include <functional>

namespace velmora {

/// Receives the progress of long work, from 0 to 1, never falling. May be empty. What it throws ends the work halfway.
using ReportProgress = std::function<void(double fraction)>;

} // namespace velmora
