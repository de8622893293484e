// What a script uses and sees a form with: the bare controls, or something that reaches them as a person
// does.
//
// The verbs and their refusals are those of toolkit/user_input.h. Everything comes on the form's thread.
#pragma once

#include "toolkit/snapshot.h"
#include "toolkit/user_input.h"

namespace toolkit {

// This one acts on the bare controls.
class Input_Driver {
public:
    using Refusal = user_input::Refusal;

    virtual ~Input_Driver() = default;
    virtual Control_Snapshot Look(const Control& control) { return Held_By(control); }
    virtual Form_Snapshot Look(const Form& form) { return Held_By(form); }
    virtual Refusal Focus(Control& control) { return user_input::Focus(control); }
    virtual Refusal Enter_Text(Control& control) { return user_input::Enter_Text(control); }
    virtual Refusal Type(Control& control, String_View character) {
        return user_input::Type(control, character);
    }
    virtual Refusal Backspace(Control& control) { return user_input::Backspace(control); }
    virtual Refusal Replace(Control& control, std::size_t start, std::size_t length, String_View text) {
        return user_input::Replace(control, start, length, text);
    }
    virtual Refusal Pick(Control& control, automation::Long index) {
        return user_input::Pick(control, index);
    }
    virtual Refusal Press(Control& control) { return user_input::Press(control); }
    virtual Refusal Press_Key(Form& form, user_input::Key key) { return user_input::Press_Key(form, key); }
    virtual Refusal Close(Form& form) { return user_input::Close(form); }
};

// Who takes the place of a person. It throws nothing.
class Player {
public:
    // The form is up; acts on it until it is not visible any more.
    virtual void Play(Form& form, Input_Driver& driver) = 0;
    // What becomes of a message box: the answer of one of its buttons, or any other, which then comes without
    // a box.
    virtual automation::Long Answer(const Message& message) = 0;

protected:
    ~Player() = default;
};

} // namespace toolkit
