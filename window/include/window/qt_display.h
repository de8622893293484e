// Forms and message boxes in a window: the Display of the thread that Qt runs on.
//
// - A form gets its widgets when it is shown; until then it costs nothing.
// - What the program changes is shown without an event; what a person does goes through
//   toolkit/user_input.h, and the widgets then show whatever the form's handlers made of it.
// - An exception that leaves a handler ends the modal dialog and comes out of Form::Show_Modal.
// - The widgets' object names are the controls' names.
//
// Everything here is called on the thread that the Qt application belongs to.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "toolkit/display.h"

namespace window {

// One line: what is missing, and what to do.
struct Cannot_Show : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Uses the process's Qt application, or creates one that lives as long as the Display, with these arguments:
// the program's name and Qt's own options. Throws Cannot_Show when there is no screen to show anything on, or
// when the Qt application belongs to another thread. The caller installs the Display with
// toolkit::Set_Display, and discards its forms before it destroys it.
std::unique_ptr<toolkit::Display> Create_Qt_Display(const std::vector<std::string>& arguments);

// Writes the form's client area, as a window shows it, to a PNG file. The form must be loaded, on whatever
// Display, and the calling thread must have a Display of Create_Qt_Display or Open_Display. Throws
// Cannot_Show when there is none or the file cannot be written; `path` is in the file system's encoding.
void Save_Picture(toolkit::Form& form, const std::string& path);
// The calling thread has such a Display.
bool Can_Save_Pictures();

} // namespace window
