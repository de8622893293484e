// What the widgets of a window show, read off them; `scale` is the window's. On Qt's thread, while the form
// may be read.
#pragma once

#include "form_window.h"
#include "toolkit/seen.h"

namespace window {

toolkit::Seen_Control Look_At(const toolkit::Control& control, const QWidget& widget, double scale);
toolkit::Seen_Form Look_At(const toolkit::Form& form, const QWidget& dialog, double scale);

} // namespace window
