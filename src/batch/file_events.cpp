#include "file_events.h"

namespace velmora {

namespace {

Json countsValue(const Counts& counts) {
    Json value = Json::object();
    for (const auto& [kind, count] : counts) {
        value[kind] = count;
    }
    return value;
}

} // namespace

Json readEvent(const FileRead& read) {
    Json event = {{"event", "read"},
                  {"path", read.path.string()},
                  {"bytes", read.bytes},
                  {"format", read.format},
                  {"complete", read.complete},
                  {"lossless", read.lossless},
                  {"found", countsValue(read.found)},
                  {"kept", countsValue(read.kept)},
                  {"changed", read.changed},
                  {"reasons", read.losses()}};
    if (!read.unit.empty()) {
        event["unit"] = read.unit;
    }
    return event;
}

Json writtenEvent(const FileWritten& written) {
    return {{"event", "written"},
            {"path", written.path.string()},
            {"bytes", written.bytes},
            {"format", written.format},
            {"counts", countsValue(written.counts)}};
}

} // namespace velmora
