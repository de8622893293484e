// What the widgets of a window show, read off them; `scale` is the window's. On Qt's thread, while the form
// may be read.
#pragma once

#include "form_window.h"
#include "toolkit/snapshot.h"

namespace window {

toolkit::Control_Snapshot Snapshot_Of(const toolkit::Control& control, const QWidget& widget, double scale);
toolkit::Form_Snapshot Snapshot_Of(const toolkit::Form& form, const QWidget& dialog, double scale);

} // namespace window
