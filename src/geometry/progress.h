#pragma once

#include <functional>

namespace velmora {

/// Is told now and then how far a long piece of work is, 0 to 1, never falling. May be empty; the work goes on to its
/// end whatever it does.
using ReportProgress = std::function<void(double fraction)>;

} // namespace velmora
