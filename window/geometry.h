// Twips as pixels, at a scale of the whole window. The screen's own scale is Qt's and comes on top of it.
#pragma once

#include <QRect>

#include <cmath>

#include "toolkit/control.h"

namespace window {

inline int Pixels(toolkit::Twips twips, double scale = 1) {
    return static_cast<int>(std::lround(static_cast<double>(twips) * scale / toolkit::Twips_Per_Pixel));
}

// Rounds the edges, not the extents: controls side by side stay side by side.
inline QRect Pixels(const toolkit::Rectangle& place, double scale) {
    const QPoint first(Pixels(place.Left, scale), Pixels(place.Top, scale));
    const QPoint behind(Pixels(place.Left + place.Width, scale), Pixels(place.Top + place.Height, scale));
    return {first, QSize(behind.x() - first.x(), behind.y() - first.y())};
}

// The way back, to the pixel.
inline toolkit::Rectangle Twips(const QRect& place, double scale) {
    const auto twips = [scale](int pixels) {
        return static_cast<toolkit::Twips>(std::lround(pixels * toolkit::Twips_Per_Pixel / scale));
    };
    return {twips(place.x()), twips(place.y()), twips(place.width()), twips(place.height())};
}

// How much larger than designed the user's font settings want everything; 1 for the usual ones.
double User_Scale();

// The same for a form of that size, or less when it would not fit on the screen.
double Scale_Of(const toolkit::Rectangle& form, const toolkit::Size& border);

// In twips at the user's scale.
toolkit::Size Primary_Screen_Size();

// Where the form stands, frame and all: where it wants to be, but on the screen.
QRect Place_On_Screen(const toolkit::Rectangle& form, double scale);

} // namespace window
