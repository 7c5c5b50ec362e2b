#pragma once

#include <cstdlib>

namespace velmora::test {

/// How often something is tried: the long form is asked for by scripts/reliability.sh.
inline int times(int inShort, int inLong) {
    const char* const form = std::getenv("VELMORA_RELIABILITY");
    return form != nullptr && *form == 'l' ? inLong : inShort;
}

} // namespace velmora::test
