#pragma once

namespace velmora {

class VelmoraDoc;

/// After a structured model became smaller: captured numbers past its ends become the last ones.
void keepCaptureInside(VelmoraDoc& document);

} // namespace velmora
