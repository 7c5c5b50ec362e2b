#include "json_values.h"

#include <cmath>

namespace velmora {

Json numberValue(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value > 0.0 ? "inf" : "-inf";
    }
    return value;
}

Json maybeNumberValue(const std::optional<double>& value) {
    return value ? numberValue(*value) : Json();
}

Json pointValue(const zVec<double>& point) {
    return Json::array({numberValue(point.x), numberValue(point.y), numberValue(point.z)});
}

Json numbersValue(const std::vector<double>& numbers) {
    Json list = Json::array();
    for (const double number : numbers) {
        list.push_back(numberValue(number));
    }
    return list;
}

Json pointsValue(const PointList& points) {
    Json list = Json::array();
    for (const zVec<double>& point : points) {
        list.push_back(pointValue(point));
    }
    return list;
}

Json patchesValue(const PatchList& patches) {
    Json list = Json::array();
    for (const Patch& patch : patches) {
        Json sections = Json::array();
        for (const PointList& section : patch) {
            sections.push_back(pointsValue(section));
        }
        list.push_back(std::move(sections));
    }
    return list;
}

Json matrixValue(const Matrix4& matrix) {
    Json list = Json::array();
    for (const double element : matrix) {
        list.push_back(numberValue(element));
    }
    return list;
}

Json fieldsValue(const DialogForm& form) {
    Json fields = Json::object();
    for (const DialogField& field : form.fields) {
        if (field.kind == FieldKind::Real) {
            fields[field.key] = numberValue(fieldNumber(field));
        } else {
            fields[field.key] = static_cast<std::int64_t>(fieldNumber(field));
        }
    }
    return fields;
}

} // namespace velmora
