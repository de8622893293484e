#include "design_font.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace window {

namespace {

constexpr int Narrowest = 75; // per cent: narrower letters are harder to read than smaller ones
constexpr int Smallest = 6;   // pixels

bool Fits(const QFont& font, const QString& text, int pixels) {
    return QFontMetricsF(font).horizontalAdvance(text) <= pixels;
}

} // namespace

QFont Stand_In(const toolkit::Font& face, double scale) {
    QFont font;
    // Tahoma is not to be had here; Liberation Sans comes closest to its widths.
    font.setFamily(face.Name == u"Tahoma"
                       ? QStringLiteral("Liberation Sans")
                       : QString::fromUtf16(face.Name.data(), static_cast<qsizetype>(face.Name.size())));
    font.setStyleHint(QFont::SansSerif);
    // Rounded down when scaled: the place may have been, too.
    const auto designed = static_cast<double>(std::lround(face.Points * 96 / 72));
    font.setPixelSize(std::max(1, static_cast<int>(std::floor(designed * scale + 0.01))));
    font.setWeight(static_cast<QFont::Weight>(std::clamp(face.Weight, 1, 1000)));
    return font;
}

QFont Fitted(const toolkit::Font& face, double scale, const QString& text, int pixels) {
    QFont font = Stand_In(face, scale);
    for (int stretch = 100; stretch > Narrowest && !Fits(font, text, pixels); --stretch)
        font.setStretch(stretch);
    while (font.pixelSize() > Smallest && !Fits(font, text, pixels))
        font.setPixelSize(font.pixelSize() - 1);
    return font;
}

} // namespace window
