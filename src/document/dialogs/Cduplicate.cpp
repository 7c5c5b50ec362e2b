#include "Cduplicate.h"

namespace velmora {

DialogForm describe(Cduplicate& values) {
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
