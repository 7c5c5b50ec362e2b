// Any bytes as the answer of the process that holds the libraries of others: no model, or a finite and whole one that
// can be written and read again.

#include "foreign_import.h"
#include "foreign_stream.h"

#include "exchange_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace velmora;
    fuzz::checkImport(data, size,
                      [](std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                         const ReportProgress& report) {
                          ForeignCollector collector(text.size());
                          const bool taken = collector.take(text.substr(0, text.size() / 2)) &&
                                             collector.take(text.substr(text.size() / 2));
                          if (taken && collector.isWhole()) {
                              takeForeign(std::move(collector.file()), options, model, record, report);
                          } else {
                              record.losesGeometry("no answer");
                          }
                      });
    return 0;
}
