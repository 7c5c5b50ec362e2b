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

namespace {

template <class Patches>
Json valueOf(const Patches& patches) {
    Json list = Json::array();
    for (std::size_t k = 0; k < patches.size(); ++k) {
        Json sections = Json::array();
        for (const PointList& section : patches[k]) {
            sections.push_back(pointsValue(section));
        }
        list.push_back(std::move(sections));
    }
    return list;
}

} // namespace

Json patchesValue(const PatchList& patches) {
    return valueOf(patches);
}

Json patchesValue(const KeptPatches& patches) {
    return valueOf(patches);
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
