// Twips as pixels.
#pragma once

#include <QGuiApplication>
#include <QRect>
#include <QScreen>

#include <cmath>

#include "toolkit/control.h"

namespace window {

inline int Pixels(toolkit::Twips twips) {
    return static_cast<int>(std::lround(static_cast<double>(twips) / toolkit::Twips_Per_Pixel));
}

// Rounds the edges, not the extents: controls side by side stay side by side.
inline QRect Pixels(const toolkit::Rectangle& place) {
    const QPoint first(Pixels(place.Left), Pixels(place.Top));
    const QPoint behind(Pixels(place.Left + place.Width), Pixels(place.Top + place.Height));
    return {first, QSize(behind.x() - first.x(), behind.y() - first.y())};
}

inline toolkit::Size Primary_Screen_Size() {
    const QSize size = QGuiApplication::primaryScreen()->size();
    return {size.width() * toolkit::Twips_Per_Pixel, size.height() * toolkit::Twips_Per_Pixel};
}

} // namespace window
