#pragma once

#include <QIcon>

namespace velmora {

/// An icon drawn from an SVG picture of the resources at any size and pixel density, its grey lines in the colour that
/// the text of the theme asks for and its white in that of the theme's paper, so that it reads on light and on dark.
/// A picture that is not there gives an icon without one.
QIcon themeIcon(const QString& picture);

} // namespace velmora
