// The font that stands in for a design's, and how a caption is made to fit the place that was designed for
// it.
#pragma once

#include <QFont>

#include "toolkit/font.h"

namespace window {

// Sizes are in pixels at 96 dots per inch, as the geometry is, whatever the screen's own resolution; `scale`
// is the window's.
QFont Stand_In(const toolkit::Font& face, double scale);

// The stand-in, condensed and at last made smaller until `text` is no wider than `pixels`.
QFont Fitted(const toolkit::Font& face, double scale, const QString& text, int pixels);

} // namespace window
