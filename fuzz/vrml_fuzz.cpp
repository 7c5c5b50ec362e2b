// Any bytes as a file of this format: read as by the plain rules, written, and read again.

#include "triangle_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    velmora::fuzz::checkVrml(data, size);
    return 0;
}
