#include "kinds.h"

namespace velmora {

const char* textOf(StructureKind kind) {
    switch (kind) {
    case StructureKind::Structured:
        return "str";
    case StructureKind::Unstructured:
        return "uns";
    case StructureKind::None:
        break;
    }
    return "non";
}

const char* textOf(FileKind kind) {
    switch (kind) {
    case FileKind::Apt:
        return "apt";
    case FileKind::Skl:
        return "skl";
    case FileKind::Dat:
        return "dat";
    case FileKind::None:
        break;
    }
    return "non";
}

const char* textOf(SecondKind kind) {
    switch (kind) {
    case SecondKind::Wrl:
        return "wrl";
    case SecondKind::Dat:
        return "dat";
    case SecondKind::None:
        break;
    }
    return "non";
}

} // namespace velmora
