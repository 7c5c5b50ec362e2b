#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "DocumentState.h"
#include "finite_model.h"

namespace velmora::test {

/// What must hold of a document whatever happened to it; a text that says what does not, empty when all holds.
inline std::string unsoundness(DocumentState& doc) {
    switch (doc.structureKind) {
    case StructureKind::None:
        if (!doc.holdsNothing()) {
            return "a model of no kind";
        }
        break;
    case StructureKind::Structured:
        if (doc.patches.empty() || !doc.feRegion.blocks.empty() || doc.fileKind == FileKind::None) {
            return "a structured model without patches, with zones, or of no kind of file";
        }
        break;
    case StructureKind::Unstructured:
        if (!doc.patches.empty()) {
            return "zones and patches at once";
        }
        break;
    }
    if (doc.structureKind == StructureKind::Structured && doc.fileKind == FileKind::Apt) {
        for (const Patch& patch : doc.patches) {
            for (const PointList& section : patch) {
                if (section.size() != patch.front().size()) {
                    return "a grid with sections of different lengths";
                }
            }
        }
    }
    if (!isFinite(doc.patches) || !isFinite(doc.feRegion)) {
        return "a number that is not finite";
    }
    for (const auto& zone : doc.feRegion.blocks) {
        for (std::int32_t i = 0; i < 4 * zone->elementCount; ++i) {
            const std::int32_t node = zone->connectivity.at(static_cast<std::size_t>(i));
            if (i % 4 != 3 && (node < 0 || node >= zone->nodeCount)) {
                return "a triangle of a node that is not there";
            }
        }
    }
    if (doc.blockCount < 0 || doc.blockCount > blockCapacity) {
        return "a zBlock of an impossible size";
    }
    for (std::int32_t i = 0; i < doc.blockCount; ++i) {
        const std::int32_t part = doc.blockList[static_cast<std::size_t>(i)];
        if (part < 0 || part >= doc.partCount()) {
            return "a zBlock with a part that is not there";
        }
    }
    const CaptureState& held = *doc.capture;
    if (held.sectionCaptured && doc.sectionAt(held.capturedPatch, held.capturedSection) == nullptr) {
        return "a captured section that is not there";
    }
    if (held.lineCaptured && doc.pointAt(held.capturedPatch, 0, held.capturedLine) == nullptr) {
        return "a captured line that is not there";
    }
    // While the next point is waited for the number of the one before is none already.
    const bool waiting = held.pointCaptureArmed || held.freePointArmed;
    if (held.pointCaptured && !waiting &&
        !doc.positionAt(held.capturedPatch, held.capturedPointSection, held.capturedPoint)) {
        return "a captured point that is not there";
    }
    return "";
}

} // namespace velmora::test
