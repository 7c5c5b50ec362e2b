#include "frame_stream.h"

#include <gtest/gtest.h>

#include "view_rig.h"

namespace velmora {
namespace {

using namespace test;

/// What a frame of two patches in the surface picture becomes as bytes.
struct SentFrame : ViewRig {
    PictureSettings settings{120, 80, PictureGround::White, false};
    DrawList list;
    DrawList held;
    Overlay overlay;
    SceneFrame frame;
    std::string bytes;

    SentFrame() {
        show(twoPatches());
        doc.surfaceMode = true;
        redraw();
        paint();
        list = view.list();
        overlay = view.overlay();
        held.begin(Primitive::Lines, {0.5F, 1.0F, 0.5F, 1.0F});
        held.addVertices({{1, 0, 0}, {0, 2, 0}});
        overlay.texts.push_back({"12.5", {1, 2, 3}, {0.25F, 0.5F, 0.75F, 1.0F}, TextPlate::Side::Below});
        frame.pixelScale = 4.0;
        frame.list = &list;
        frame.held = &held;
        frame.overlay = &overlay;
        frame.filled = true;
        frame.modelView = view.modelViewMatrix;
        frame.projection = view.projectionMatrix;
        frame.viewport = view.viewport;
        EXPECT_TRUE(writeFrame(frame, settings, [this](const char* first, std::size_t size) {
            bytes.append(first, size);
            return true;
        }));
    }
    /// Reads the first `size` of the bytes.
    bool read(std::size_t size, ReceivedFrame& received) const {
        std::size_t done = 0;
        return readFrame(
            [&](char* room, std::size_t wanted) {
                const bool there = done + wanted <= size;
                if (there) {
                    bytes.copy(room, wanted, done);
                    done += wanted;
                }
                return there;
            },
            received);
    }
};

TEST(FrameStream, BringsAllThatTheFrameShows) {
    const SentFrame sent;
    ReceivedFrame received;
    ASSERT_TRUE(sent.read(sent.bytes.size(), received));
    EXPECT_EQ(received.settings.width, 120);
    EXPECT_EQ(received.settings.height, 80);
    EXPECT_EQ(received.settings.ground, PictureGround::White);
    EXPECT_FALSE(received.settings.triad);
    EXPECT_EQ(received.list.vertices, sent.list.vertices);
    EXPECT_EQ(received.list.normals, sent.list.normals);
    ASSERT_EQ(received.list.batches.size(), sent.list.batches.size());
    EXPECT_EQ(received.list.batches.back().colour, sent.list.batches.back().colour);
    EXPECT_EQ(received.list.batches.back().vertexCount, sent.list.batches.back().vertexCount);
    const SceneFrame scene = received.scene();
    EXPECT_EQ(scene.held->vertices, sent.held.vertices);
    EXPECT_TRUE(scene.filled);
    EXPECT_FALSE(scene.edges);
    EXPECT_EQ(scene.modelView, sent.frame.modelView);
    EXPECT_EQ(scene.projection, sent.frame.projection);
    EXPECT_EQ(scene.viewport.width, 600);
    EXPECT_EQ(scene.pixelScale, 4.0);
    ASSERT_FALSE(scene.overlay->texts.empty());
    EXPECT_EQ(scene.overlay->texts.back().text, "12.5");
    EXPECT_EQ(scene.overlay->texts.back().plate, TextPlate::Side::Below);
    EXPECT_EQ(scene.overlay->texts.back().position, zVec<double>(1, 2, 3));
    EXPECT_EQ(scene.overlay->texts.back().colour, (Colour{0.25F, 0.5F, 0.75F, 1.0F}));
}

TEST(FrameStream, BytesThatAreCutOffAreNoFrame) {
    const SentFrame sent;
    for (std::size_t size = 0; size < sent.bytes.size(); size += 7) {
        ReceivedFrame received;
        EXPECT_FALSE(sent.read(size, received)) << size;
    }
}

TEST(FrameStream, AnotherVersionIsNoFrame) {
    SentFrame sent;
    sent.bytes[sizeof(std::uint64_t)] = '?';
    ReceivedFrame received;
    EXPECT_FALSE(sent.read(sent.bytes.size(), received));
}

TEST(FrameStream, EndsWhereNoBytesAreTaken) {
    const SentFrame sent;
    EXPECT_FALSE(writeFrame(sent.frame, sent.settings, [](const char*, std::size_t) { return false; }));
}

} // namespace
} // namespace velmora
