#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace velmora {

// Nodes of VRML and Inventor beside the shapes, of which no model keeps anything.

/// From where, and in which light, a scene is looked at.
inline constexpr std::array<std::string_view, 9> surroundingNodes{
    "Viewpoint", "PerspectiveCamera", "OrthographicCamera", "DirectionalLight", "PointLight", "SpotLight", "Background",
    "Fog",       "NavigationInfo"};
/// Nodes that show one of the nodes below them.
inline constexpr std::array<std::string_view, 3> choosingNodes{"Switch", "LOD", "LevelOfDetail"};
/// Nodes that turn shapes, or make something of a click on them or of the time.
inline constexpr std::array<std::string_view, 7> actingNodes{"Anchor", "WWWAnchor", "Billboard", "Sound",
                                                             "Script", "Collision", "ROUTE"};

template <std::size_t count>
bool isOneOf(std::string_view word, const std::array<std::string_view, count>& words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

} // namespace velmora
