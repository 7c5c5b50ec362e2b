#pragma once

namespace velmora {

// What the document holds, by kind. The texts are those that are printed; of a grid and of lines they are the
// extensions of their files too.

/// What the model is made of.
enum class StructureKind { None, Structured, Unstructured };
/// What a structured model is: a grid, or lines of their own lengths. No model is of the kind Dat.
enum class FileKind { None, Apt, Skl, Dat };
/// What stands beside the model, to project on. No second grid is kept, so that nothing is of the kind Dat.
enum class SecondKind { None, Wrl, Dat };

/// "non", "str", "uns".
const char* textOf(StructureKind kind);
/// "non", "apt", "skl", "dat".
const char* textOf(FileKind kind);
/// "non", "wrl", "dat".
const char* textOf(SecondKind kind);

} // namespace velmora
