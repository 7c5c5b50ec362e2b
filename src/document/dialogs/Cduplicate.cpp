#include "Cduplicate.h"

namespace velmora {

DialogForm describe(Cduplicate& values) {
    DialogForm form;
    form.name = "Cduplicate";
    form.title = "Duplicate";
    form.fields = {integerField("duplicateCount", "Duplication", values.duplicateCount, 1, 1000000)};
    return form;
}

} // namespace velmora
