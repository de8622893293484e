// The pictures that a form's designer laid down.
#pragma once

#include <QIcon>
#include <QImage>
#include <QPixmap>

#include "toolkit/form.h"

namespace window {

// Null when the form has no such picture, or when it cannot be read.
inline QImage Picture_Of(const toolkit::Form& form, automation::Long id) {
    if (!form.Pictures())
        return {};
    const auto bytes = form.Pictures()(id);
    return QImage::fromData(bytes.data(), static_cast<int>(bytes.size()));
}

// In several sizes: a window manager's own scaling is coarse.
inline QIcon Icon_Of(const toolkit::Form& form) {
    const QImage drawn = Picture_Of(form, toolkit::Icon_Picture);
    if (drawn.isNull())
        return {};
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128}) {
        // Whole pixels where they come out even, means of pixels elsewhere.
        const auto way = size % drawn.width() == 0 ? Qt::FastTransformation : Qt::SmoothTransformation;
        icon.addPixmap(QPixmap::fromImage(drawn.scaled(size, size, Qt::KeepAspectRatio, way)));
    }
    return icon;
}

} // namespace window
