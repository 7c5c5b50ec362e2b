// Any bytes as a file of this format for Import: a finite and whole model or a reason, and what comes of it can be
// written and read again.

#include "obj_import.h"

#include "exchange_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    velmora::fuzz::checkImport(data, size, velmora::importObj);
    return 0;
}
