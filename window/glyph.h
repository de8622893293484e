// The black glyph of a small bitmap as a shape, which is sharp at any scale and takes any colour.
#pragma once

#include <QImage>
#include <QPainterPath>

namespace window {

// In the image's coordinates. The glyph's parts are convex and stand in columns of their own.
QPainterPath Glyph_Of(const QImage& image);

} // namespace window
