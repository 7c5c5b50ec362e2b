#pragma once

namespace velmora {

class VelmoraDoc;

// How commands leave what stands in their way.

/// Leaves the line regime when it has its section or line.
void letCurveGo(VelmoraDoc& doc);
/// Leaves the point regime, also one that waits for the click.
void leavePointRegime(VelmoraDoc& doc);
/// The point regime and the line regime, in this order.
void leavePointAndCurves(VelmoraDoc& doc);
/// The idle prompt, when no regime is left.
void showIdlePrompt(VelmoraDoc& doc);

} // namespace velmora
