// Texts between the toolkit and Qt, both UTF-16: copied unit by unit, nothing is lost.
#pragma once

#include <QString>

#include "toolkit/font.h"

namespace window {

inline QString To_Qt(toolkit::String_View text) {
    return QStringView(text.data(), static_cast<qsizetype>(text.size())).toString();
}

inline toolkit::String From_Qt(const QString& text) {
    return text.toStdU16String();
}

} // namespace window
