#include "view_rig.h"

namespace velmora {
namespace {

using test::expectVector;
using test::flatPatch;
using test::twoPatches;
using test::ViewRig;

TEST(MarkerNumbers, CountFromOneAndStandAHundredthBeforeTheirMarkers) {
    for (const char* projection : {"view.perspective", "view.orthographic"}) {
        ViewRig rig;
        rig.show({flatPatch(3, 4), flatPatch(3, 4, 2.0)});
        rig.view.runViewCommand(projection);
        rig.view.SetEulerView({30, 20, 10});
        rig.doc.markers = {{1, 1, 0}, {2, 1, 2}, {3, 0, 1}};
        rig.doc.markersOpen = true;
        rig.paint();
        const std::vector<DrawText>& texts = rig.view.overlay().texts;
        ASSERT_EQ(texts.size(), 3U);
        const SceneFrame& frame = rig.surface.lastFrame;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            EXPECT_EQ(texts[i].text, std::to_string(i + 1));
            EXPECT_EQ(texts[i].colour, (Colour{1, 0, 0, 1}));
            const auto marker = projectPoint(rig.doc.markers[i], frame.modelView, frame.projection, frame.viewport);
            const auto digits = projectPoint(texts[i].position, frame.modelView, frame.projection, frame.viewport);
            ASSERT_TRUE(marker && digits);
            expectVector(*digits, {marker->x, marker->y, marker->z * 0.99}, 1e-6);
        }
    }
}

TEST(MarkerNumbers, AreShownWithTheMarkersOnly) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.doc.markers = {{1, 1, 0}};
    rig.paint();
    EXPECT_TRUE(rig.view.overlay().texts.empty());
    rig.doc.markersOpen = true;
    rig.doc.markers.clear();
    rig.paint();
    EXPECT_TRUE(rig.view.overlay().texts.empty());
}

} // namespace
} // namespace velmora
