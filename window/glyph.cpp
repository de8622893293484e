#include "glyph.h"

#include <algorithm>
#include <vector>

namespace window {

namespace {

using Corners = std::vector<QPointF>;

// The corners of the glyph's pixels in a column, from left to right.
Corners Corners_In(const QImage& image, int column) {
    Corners corners;
    for (int row = 0; row < image.height(); ++row)
        if (image.pixelColor(column, row).lightness() < 64)
            for (const int right : {0, 1})
                for (const int below : {0, 1})
                    corners.emplace_back(column + right, row + below);
    return corners;
}

double Turn(const QPointF& from, const QPointF& by, const QPointF& to) {
    return (by.x() - from.x()) * (to.y() - from.y()) - (by.y() - from.y()) * (to.x() - from.x());
}

// One side of the hull of sorted corners.
void Add_Side(const Corners& corners, QPolygonF& hull) {
    const auto first = hull.size();
    for (const QPointF& corner : corners) {
        while (hull.size() >= first + 2 && Turn(hull[hull.size() - 2], hull.back(), corner) <= 0)
            hull.removeLast();
        hull << corner;
    }
}

void Add_Part(Corners& corners, QPainterPath& glyph) {
    std::sort(corners.begin(), corners.end(), [](const QPointF& one, const QPointF& other) {
        return std::pair(one.x(), one.y()) < std::pair(other.x(), other.y());
    });
    QPolygonF hull;
    Add_Side(corners, hull);
    std::reverse(corners.begin(), corners.end());
    Add_Side(corners, hull);
    glyph.addPolygon(hull);
    glyph.closeSubpath();
    corners.clear();
}

} // namespace

QPainterPath Glyph_Of(const QImage& image) {
    QPainterPath glyph;
    Corners part;
    for (int column = 0; column <= image.width(); ++column) {
        const Corners here = column < image.width() ? Corners_In(image, column) : Corners();
        part.insert(part.end(), here.begin(), here.end());
        if (here.empty() && !part.empty())
            Add_Part(part, glyph);
    }
    return glyph;
}

} // namespace window
