#pragma once

#include <cstdint>

#include "DialogForm.h"

namespace velmora {

/// The largest side of a picture, in pixels.
inline constexpr std::int32_t largestPictureSide = 16384;

/// How what the view shows becomes a picture.
struct CPicture {
    std::int32_t width = 800; ///< in pixels; the dialog comes up with those of the view
    std::int32_t height = 600;
    std::int32_t ground = 1; ///< 1 black, 2 white, 3 none
    bool triad = true;
};

/// The form over `values`, which must outlive it.
inline DialogForm describe(CPicture& values) {
    DialogForm form;
    form.name = "CPicture";
    form.title = "Save picture";
    form.fields = {
        integerField("width", "Width", values.width, 1, largestPictureSide),
        integerField("height", "Height", values.height, 1, largestPictureSide),
        radioField("ground", values.ground, {"Black ground", "White ground", "Clear ground"}),
        checkField("triad", "With the axes", values.triad),
    };
    return form;
}

} // namespace velmora
