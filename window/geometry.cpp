#include "geometry.h"

#include <QFont>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace window {

using toolkit::Twips_Per_Pixel;

double User_Scale() {
    constexpr double Usual = 11; // points: the largest font that a desktop comes with
    constexpr double Largest = 4;
    const double resolution = QGuiApplication::primaryScreen()->logicalDotsPerInch();
    const QFont font = QGuiApplication::font();
    const double points = font.pointSizeF() > 0 ? font.pointSizeF() : font.pixelSize() * 72 / resolution;
    return std::clamp(std::max(1.0, resolution / 96) * std::max(1.0, points / Usual), 1.0, Largest);
}

double Scale_Of(const toolkit::Rectangle& form, const toolkit::Size& border) {
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    const auto fitting = [](int pixels, toolkit::Twips frame, toolkit::Twips whole) {
        return static_cast<double>(pixels * Twips_Per_Pixel - frame) / static_cast<double>(whole - frame);
    };
    return std::min({User_Scale(), fitting(screen.width(), border.Width, form.Width),
                     fitting(screen.height(), border.Height, form.Height)});
}

toolkit::Size Primary_Screen_Size() {
    const QSize size = QGuiApplication::primaryScreen()->size();
    const auto twips = [scale = User_Scale()](int pixels) {
        return static_cast<toolkit::Twips>(pixels * Twips_Per_Pixel / scale);
    };
    return {twips(size.width()), twips(size.height())};
}

QRect Place_On_Screen(const toolkit::Rectangle& form, double scale) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QRect place = Pixels(form, scale);
    place.moveCenter(Pixels(form, User_Scale()).center());
    place.moveRight(std::min(place.right(), screen.right()));
    place.moveBottom(std::min(place.bottom(), screen.bottom()));
    place.moveLeft(std::max(place.left(), screen.left()));
    place.moveTop(std::max(place.top(), screen.top()));
    return place;
}

} // namespace window
