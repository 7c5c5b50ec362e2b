#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "count_limit.h"

namespace velmora {

/// How many times the captured point, section or line stands afterwards.
struct Cduplicate {
    std::int32_t duplicateCount = 1;

    MemoryRoom room = {}; ///< set by the command before the dialog opens: of one copy
};

/// The form over `values`, which must outlive it.
inline DialogForm describe(Cduplicate& values) {
    DialogForm form;
    form.name = "Cduplicate";
    form.title = "Duplicate";
    form.fields = {integerField("duplicateCount", "Duplication", values.duplicateCount, 1, 1000000)};
    form.confirm = [&values](DialogForm&) {
        return refuseTooMany({{"duplicateCount", values.duplicateCount, 1, values.room.bytesEach}}, values.room.free);
    };
    return form;
}

} // namespace velmora
