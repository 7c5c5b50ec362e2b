// Any bytes as an archive for Import, and as the model within a whole one, which the checksums of an archive would
// keep them from.

#include "threemf_import.h"

#include "exchange_fuzz.h"
#include "small_zip.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (text.starts_with("PK")) {
        fuzz::checkImport(data, size, importThreemf);
    } else {
        const std::string archive = test::zipOf({{"3D/3dmodel.model", text}});
        fuzz::checkImport(reinterpret_cast<const std::uint8_t*>(archive.data()), archive.size(), importThreemf);
    }
    return 0;
}
