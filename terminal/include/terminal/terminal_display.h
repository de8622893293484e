// Forms and message boxes in a text terminal, for the keyboard alone: the Display of the thread that creates
// it.
//
// - A form keeps its order and its rows; empty space between them goes, so that the editor's dialog fits into
//   80 x 24 cells. What does not fit scrolls to the control that has the focus.
// - A person's keys go through toolkit/user_input.h, so that they are the same events as in a window:
//   Tab and Shift-Tab, Space, Enter (default button), Esc (cancel button), arrows, Home, End, Delete,
//   Backspace, Ctrl-A for a key or a paste that replaces a field's text, Alt-Down or F4 for a combo box's
//   list, Alt with a letter for a caption's access key, Ctrl-Q for the close box, Ctrl-L to repaint. Ctrl-C
//   does nothing but say how to leave. A pasted text is one edit.
// - An exception that leaves a handler ends the modal dialog and comes out of Form::Show_Modal.
// - A hang-up of the terminal, SIGHUP and SIGTERM save and discard nothing: Run_Modal fails with one
//   automation::Failure, a question that is up answers Cancel.
//
// While anything is shown, standard input and output, the terminal's modes and the handlers of SIGHUP,
// SIGINT, SIGTERM, SIGTSTP, SIGCONT and SIGWINCH belong to the Display; afterwards all are as before. One
// thread of the process can show something at a time, the second one fails.
//
// Colours are off when NO_COLOR is set to anything or the terminal has none.
#pragma once

#include <memory>
#include <stdexcept>

#include "toolkit/input_driver.h"

namespace terminal {

// One line: what is missing, and what to do.
struct Cannot_Show : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Touches nothing until a form is shown. Throws Cannot_Show when standard input or output is no terminal,
// TERM names none that can be drawn on, or there are fewer than 40 x 12 cells. The caller installs the
// Display with toolkit::Set_Display, and discards its forms before it destroys it.
std::unique_ptr<toolkit::Display> Create_Terminal_Display();

// On a terminal of its own, which nobody sees, with a player in the place of a person: it sends keys.
// The player outlives the Display. Throws Cannot_Show when there is no such terminal to be had.
std::unique_ptr<toolkit::Display> Create_Played_Terminal_Display(toolkit::Player& player);

} // namespace terminal
