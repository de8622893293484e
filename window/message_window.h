// A message box in a window of its own, modal over the dialog that is up.
#pragma once

#include <functional>

#include "toolkit/display.h"

class QMessageBox;
class QWidget;

namespace window {

// `over`: the dialog that the box belongs to; null for none.
automation::Long Ask(const toolkit::Message& message, QWidget* over);

// The same without waiting: the box is up when it returns, and goes once it is answered.
QMessageBox& Put(const toolkit::Message& message, QWidget* over,
                 const std::function<void(automation::Long)>& answered);

// The button that gives this answer.
QWidget& Button_Of(const QMessageBox& box, automation::Long answer);

} // namespace window
