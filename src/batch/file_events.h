#pragma once

#include "FileRecord.h"
#include "json_values.h"

namespace velmora {

/// The event "read": what a file held and what became of it.
Json readEvent(const FileRead& read);

/// The event "written".
Json writtenEvent(const FileWritten& written);

} // namespace velmora
