// A message box in a window of its own, modal over the dialog that is up.
#pragma once

#include "toolkit/display.h"

class QWidget;

namespace window {

// `over`: the dialog that the box belongs to; null for none.
automation::Long Ask(const toolkit::Message& message, QWidget* over);

} // namespace window
