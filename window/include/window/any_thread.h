// Forms and message boxes in a window, on whatever thread.
//
// - On the thread of the host's QApplication it is the Display of Create_Qt_Display.
// - On another thread the widgets live on the application's thread, and the two take turns: the form's
//   handlers run on the calling thread, as on any Display, while the widgets wait. A host's application has
//   to process its events, or everything here waits until it does.
// - Without an application a thread of our own gets one. It ends with the last Display that uses it.
//
// A dialog is modal for its thread: it leaves the windows of other threads alone, message boxes included.
// When the application ends while a dialog is up, Form::Show_Modal fails with an automation::Failure and a
// message box answers Not_Shown; so does everything that is shown on that Display later.
#pragma once

#include <memory>

#include "toolkit/input_driver.h"

namespace window {

// The Display is used and destroyed on the calling thread, which installs it with toolkit::Set_Display and
// discards its forms before. Throws Cannot_Show (window/qt_display.h) when there is no screen to show
// anything on, or when the host's application has no widgets.
std::unique_ptr<toolkit::Display> Open_Display();
// The same with a player in the place of a person, who synthesises input. The player outlives the
// Display. Throws Cannot_Show on the thread of the host's application, too.
std::unique_ptr<toolkit::Display> Open_Played_Display(toolkit::Player& player);

} // namespace window
