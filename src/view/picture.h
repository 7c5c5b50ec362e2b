#pragma once

#include <functional>
#include <string>

#include "ViewSurface.h"

namespace velmora {

class VelmoraView;
struct DocumentState;

/// What stands behind the model in a picture.
enum class PictureGround { Black, White, Clear };

/// How a picture is made of what a view shows.
struct PictureSettings {
    int width = 800;
    int height = 600;
    PictureGround ground = PictureGround::Black;
    bool triad = true;
};

/// How many times as large as in a window the axes, texts, points and lines of a picture are: as often as 900 pixels go
/// into its shorter side, rounded, and once at least. So a large picture is read in print, and whole numbers keep lines
/// sharp. It knows no window: a script draws the same.
double pixelScaleOf(const PictureSettings& settings);

/// Hands `draw` what the view would show in a window of that size; afterwards the view is as it was. Nothing to draw of
/// an empty model: the lists are empty then.
void withPicture(VelmoraView& view, const DocumentState& document, const PictureSettings& settings,
                 const std::function<void(const SceneFrame&)>& draw);

/// A colour as it shows on the ground: on a white one what would be white is black.
Colour onGround(const Colour& colour, PictureGround ground);
/// The same for all that is drawn.
DrawList onGround(DrawList list, PictureGround ground);
Overlay onGround(Overlay overlay, PictureGround ground);
/// The ground's own colour.
Colour colourOf(PictureGround ground);

/// The lines, outlines of faces and points of a frame as a drawing, SVG 1.1. What stands behind the eye or outside of
/// the picture is cut off; nothing is hidden by what is in front of it.
std::string svgOf(const SceneFrame& frame, const PictureSettings& settings);

} // namespace velmora
