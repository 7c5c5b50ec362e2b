#pragma once

#include <array>
#include <cstdint>

namespace velmora {

struct DocumentState;

/// What tells two states of a document apart: equal ones have equal marks.
struct StateMark {
    std::uint64_t kept = 0;   ///< the model, what is captured, buffers, the zBlock, names, switches, the comparison
    std::uint64_t undo = 0;   ///< the snapshots for Undo
    std::uint64_t beside = 0; ///< the values of the dialogs
};

/// Makes marks; of a geometry that did not change it is asked once.
class StateMarker {
public:
    StateMark markOf(const DocumentState& doc);

private:
    std::uint64_t modelMark(const DocumentState& doc);
    std::uint64_t undoMark(const DocumentState& doc);

    bool modelKnown_ = false;
    std::uint64_t revision_ = 0;
    std::uint64_t model_ = 0;
    bool undoKnown_ = false;
    std::array<std::uint64_t, 8> undoKey_{};
    std::uint64_t undo_ = 0;
};

} // namespace velmora
