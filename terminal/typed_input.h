// Input_Driver that use a dialog in a terminal as a person does: by the bytes that a terminal sends for keys.
//
// A verb ends when everything that came of it has ended, boxes included. What no key of a terminal does goes
// to the controls themselves: moving the focus farther than to the next or the previous stop, picking in a
// list box, an edit in the middle of what is one character on the screen, and characters that are none of a
// text (control characters, lone surrogates).
#pragma once

#include <string>
#include <vector>

#include "form_keys.h"
#include "played_device.h"
#include "toolkit/input_driver.h"

namespace terminal {

class Typed_Input final : public toolkit::Input_Driver {
public:
    // All outlive the driver.
    Typed_Input(Screen& screen, Played_Device& device, Form_View& view)
        : screen(screen), device(device), view(view), keys(screen, view) {}

    Refusal Focus(toolkit::Control& control) override;
    Refusal Enter_Text(toolkit::Control& control) override;
    Refusal Type(toolkit::Control& control, toolkit::String_View character) override;
    Refusal Backspace(toolkit::Control& control) override;
    Refusal Replace(toolkit::Control& control, std::size_t start, std::size_t length,
                    toolkit::String_View text) override;
    Refusal Pick(toolkit::Control& control, automation::Long index) override;
    Refusal Press(toolkit::Control& control) override;
    Refusal Press_Key(toolkit::Form& form, toolkit::user_input::Key key) override;
    Refusal Close(toolkit::Form& form) override;

private:
    using Keys = std::vector<std::string>;
    // Until they have been used up, or the form is not up any more.
    void Send(const Keys& sent);
    void Go_To(toolkit::Control& control);
    bool Select(toolkit::Text_Control& field, std::size_t start, std::size_t length);

    Screen& screen;
    Played_Device& device;
    Form_View& view;
    Form_Keys keys;
};

// The keys that give an answer in a message box that is up.
std::string Key_Of_Answer(automation::Long answer);

} // namespace terminal
