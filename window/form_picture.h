// The pictures that a form's designer laid down.
#pragma once

#include <QImage>

#include "toolkit/form.h"

namespace window {

// Null when the form has no such picture, or when it cannot be read.
inline QImage Picture_Of(const toolkit::Form& form, automation::Long id) {
    if (!form.Pictures())
        return {};
    const auto bytes = form.Pictures()(id);
    return QImage::fromData(bytes.data(), static_cast<int>(bytes.size()));
}

} // namespace window
