#pragma once

#include <cstdint>

#include "PatchList.h"
#include "zRegion.h"

namespace velmora {

/// What passes between the program and a file of others: grids or triangles, never both.
struct ExchangeModel {
    PatchList patches;
    zRegion_fe region;
    double libraryMoves = 0.0; ///< how far points may stand from where their file has them, if that is worth telling
    bool empty() const { return patches.empty() && region.blocks.empty(); }
};

/// A model that is only looked at, wherever it lives; it must outlive the view.
struct ExchangeView {
    const PatchList& patches;
    const zRegion_fe& region;

    ExchangeView(const PatchList& grids, const zRegion_fe& triangles) : patches(grids), region(triangles) {}
    ExchangeView(const ExchangeModel& model)
        : patches(model.patches), region(model.region) {} // each model can be viewed
    bool empty() const { return patches.empty() && region.blocks.empty(); }
};

/// What a user may ask for when a file is read.
struct ImportOptions {
    bool merge = false;            ///< points with three equal coordinates, to the bit, become one
    bool volumeFaces = false;      ///< volume zones give their outer faces
    double scale = 1.0;            ///< every coordinate times this; finite, above 0
    bool cadPatches = false;       ///< faces of CAD give patches, else triangles
    double chord = 0.1;            ///< how far triangles of CAD may stand from the surface; above 0
    std::int32_t sections = 33;    ///< of each patch of CAD, 2 to 10000
    std::int32_t points = 33;      ///< of each of these sections, the same
    int childSeconds = 600;        ///< how long the library of others may be at work
    std::uint64_t childMemory = 0; ///< how many bytes it may have; 0 as many as an import may take
};

/// What a user may ask for when a file is written.
struct ExportOptions {
    int digits = 17;             ///< significant ones of numbers in text, 6 to 17
    bool binary = true;          ///< where a format has both forms
    bool doublePrecision = true; ///< of binary numbers, where a format has both
    bool merge = false;          ///< as for reading, within each zone; the model is never changed
};

} // namespace velmora
