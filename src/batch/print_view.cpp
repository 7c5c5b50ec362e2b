#include <array>
#include <charconv>

#include "DocumentState.h"
#include "print_values.h"

namespace velmora {

namespace {

/// The double with the fewest digits that stands for the same single-precision number: 0.7, not 0.699999988.
double shortestDouble(float value) {
    std::array<char, 32> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    double number = value;
    std::from_chars(digits.data(), written.ptr, number);
    return number;
}

Json colourValue(const Colour& colour) {
    Json rgba = Json::array();
    for (const float part : colour) {
        rgba.push_back(numberValue(shortestDouble(part)));
    }
    return rgba;
}

Json runValue(const std::vector<zVec<double>>& all, std::size_t first, std::size_t count) {
    Json list = Json::array();
    for (std::size_t i = first; i < first + count; ++i) {
        list.push_back(pointValue(all[i]));
    }
    return list;
}

Json batchesValue(const DrawList& list) {
    Json batches = Json::array();
    for (const DrawBatch& batch : list.batches) {
        Json value = Json::object();
        value["primitive"] = primitiveName(batch.primitive);
        value["pointSize"] = numberValue(shortestDouble(batch.pointSize));
        value["lit"] = batch.lit;
        value["vertices"] = runValue(list.vertices, batch.firstVertex, batch.vertexCount);
        value["normals"] =
            batch.hasNormals ? runValue(list.normals, batch.firstNormal, batch.vertexCount) : Json(nullptr);
        value["colours"] = Json::array({colourValue(batch.colour)});
        batches.push_back(std::move(value));
    }
    return batches;
}

void addCamera(Json& value, const VelmoraView& view) {
    value["mouseMode"] = view.mouseMode;
    value["projectionMode"] = view.projectionMode;
    value["viewAngles"] = pointValue(view.viewAngles);
    value["viewAlongX"] = view.viewAlongX;
    value["viewAlongY"] = view.viewAlongY;
    value["viewAlongZ"] = view.viewAlongZ;
    value["modelRotation"] = matrixValue(view.modelRotation);
    value["modelOffset"] = pointValue(view.modelOffset);
    value["defaultOffset"] = pointValue(view.defaultOffset);
    value["modelScale"] = pointValue(view.modelScale);
    value["zoomFactor"] = numberValue(view.zoomFactor);
    value["viewCentreX"] = numberValue(view.viewCentreX);
    value["viewCentreY"] = numberValue(view.viewCentreY);
    value["aspectRatio"] = numberValue(view.aspectRatio);
    value["nearPlane"] = numberValue(view.nearPlane);
    value["farPlane"] = numberValue(view.farPlane);
    value["viewport"] = Json::array({view.viewport.x, view.viewport.y, view.viewport.width, view.viewport.height});
}

} // namespace

Json viewValue(const VelmoraView& view) {
    Json value = Json::object();
    addCamera(value, view);
    value["spinActive"] = view.spinActive;
    value["spinAngle"] = numberValue(view.spinAngle);
    value["spinAxis"] = pointValue(view.spinAxis);
    value["rubberBandShown"] = view.rubberBandShown;
    value["modelViewMatrix"] = matrixValue(view.modelViewMatrix);
    value["projectionMatrix"] = matrixValue(view.projectionMatrix);
    return value;
}

Json sceneValue(VelmoraView& view) {
    return Json{{"list", view.list().number}, {"batches", batchesValue(view.list())}};
}

Json overlayValue(const VelmoraView& view) {
    Json texts = Json::array();
    for (const DrawText& text : view.overlay().texts) {
        texts.push_back(
            {{"text", text.text}, {"position", pointValue(text.position)}, {"colour", colourValue(text.colour)}});
    }
    return Json{{"batches", batchesValue(view.overlay().list)}, {"texts", texts}};
}

PrintedValue windowValue(std::span<const std::string> words, VelmoraView& view, const DocumentState& doc) {
    const auto numbers = parseReals(words, 3);
    if (!numbers) {
        return ScriptFailure{"a place in the window needs a model point", "write print window X Y Z"};
    }
    // The mouse works with the camera as it stands; the matrix in force may be older.
    const Matrix4 inForce = view.modelViewMatrix;
    view.ApplyModelTransform(doc.modelCenter);
    const auto place = projectPoint({(*numbers)[0], (*numbers)[1], (*numbers)[2]}, view.modelViewMatrix,
                                    view.projectionMatrix, view.viewport);
    view.modelViewMatrix = inForce;
    if (!place) {
        return Json::array();
    }
    return pointValue({place->x, view.viewport.height - 1 - place->y, place->z});
}

} // namespace velmora
