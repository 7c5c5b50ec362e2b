#include "FrameRig.h"

#include "VelmoraDoc.h"

namespace velmora::test {

void FrameRig::start() {
    QSettings().clear();
    document().onNewDocument();
    frame.showAsLeft();
    EXPECT_TRUE(waitUntil([this] { return frame.isActiveWindow(); }));
}

} // namespace velmora::test
