// Any bytes as a file of this format for Import: a finite and whole model or a reason, and what comes of it can be
// written and read again. No other file stands beside it.

#include "gltf_import.h"

#include "exchange_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    velmora::fuzz::checkImport(data, size,
                               [](std::string_view text, const velmora::ImportOptions& options,
                                  velmora::ExchangeModel& model, velmora::FileRead& record,
                                  const velmora::ReportProgress& report) {
                                   static const velmora::fuzz::OutputFolder folder;
                                   velmora::importGltf(text, folder / "", options, model, record, report);
                               });
    return 0;
}
