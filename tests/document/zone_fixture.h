#pragma once

#include "arranged_capture.h"
#include "document_fixture.h"

namespace velmora::test {

/// A document test that can hold an unstructured model too.
class ZoneTest : public DocumentTest {
protected:
    /// One zone for each count: zone k has the title "zonek" and its node n stands at (n, k, 0).
    void holdZones(const std::vector<int>& counts) {
        doc.feRegion.blocks.clear();
        for (const int nodes : counts) {
            const auto number = static_cast<double>(doc.feRegion.blocks.size());
            auto zone = std::make_unique<zBlock_fe>(nodes, 4, 1);
            zone->title = "zone" + std::to_string(doc.feRegion.blocks.size());
            zone->connectivity = {0, 1, 2, -1};
            for (const char* name : {"x", "y", "z"}) {
                zone->variables.push_back(std::make_unique<zArray<double>>(nodes, 1, 1, name));
            }
            for (int n = 0; n < nodes; ++n) {
                zone->variables[0]->data[static_cast<std::size_t>(n)] = n;
                zone->variables[1]->data[static_cast<std::size_t>(n)] = number;
            }
            doc.feRegion.blocks.push_back(std::move(zone));
        }
        doc.patches.clear();
        doc.structureKind = StructureKind::Unstructured;
        doc.fileKind = FileKind::None;
        doc.modelFile.chosenPath = folder / "wing.dat";
        doc.updateBounds();
        forget();
    }

    std::vector<std::int32_t> nodeCounts() const {
        std::vector<std::int32_t> counts;
        for (const auto& zone : doc.feRegion.blocks) {
            counts.push_back(zone->nodeCount);
        }
        return counts;
    }

    zVec<double> node(std::int32_t zone, std::int32_t number) const {
        zVec<double> at;
        EXPECT_EQ(doc.feRegion.getNode(zone, number, at.x, at.y, at.z), 0);
        return at;
    }

    void captureNode(std::int32_t zone, std::int32_t number) {
        doc.capture.keepPoint();
        doc.capture.showPoint();
        doc.capture.renumberPatch(zone);
        doc.capture.renumberPoint(doc.capture->capturedPointSection, number);
        doc.capture.placePoint(node(zone, number));
    }
};

} // namespace velmora::test
