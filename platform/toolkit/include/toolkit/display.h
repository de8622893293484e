// What shows forms and message boxes: a window, a script, or nothing.
//
// A Display observes the forms that were loaded on it and feeds what a person does back through
// toolkit/user_input.h. It is told of every change of a property once, after the change. All calls come on
// the thread that the form belongs to. Whoever installs a Display owns it and keeps it alive until the forms
// loaded on it are gone (Discard_All_Forms).
#pragma once

#include "automation/failure.h"
#include "toolkit/font.h"

namespace toolkit {

class Form;
class Control;

enum class Property { Caption, Text, Caret, Enabled, Visible, Geometry, Items, Index, Value, Picture };

// Answers of a message box.
namespace answer {
constexpr automation::Long Not_Shown = -1;
constexpr automation::Long OK = 1;
constexpr automation::Long Save = 2;
constexpr automation::Long Discard = 3;
constexpr automation::Long Cancel = 4;
} // namespace answer

// A modal box. A platform box has a style (16: OK and the stop icon, 64: OK and the information icon); a
// product box has a language, a kind (1 confirmation question, 2 information, 3 error) and a button set
// (1: one button, 3: save, discard, cancel).
struct Message {
    bool By_Product = false;
    automation::Long Language = 0;
    String Text;
    automation::Long Kind = 0;
    automation::Long Buttons = 0;
    automation::Long Style = 0;
    String Title;

    bool Asks() const { return By_Product && Buttons != 1; }
    // One of its buttons gives this answer.
    bool Has_Button(automation::Long given) const {
        return Asks() ? given >= answer::Save && given <= answer::Cancel : given == answer::OK;
    }
};

class Display {
public:
    virtual ~Display() = default;

    virtual Size Screen_Size() const = 0;
    virtual Size Text_Size(const Font& font, String_View text) const { return Design_Text_Size(font, text); }

    virtual void Form_Loaded(Form& form) = 0;
    virtual void Form_Unloaded(Form& form) = 0; // the form's controls are gone after this call
    virtual void Form_Changed(Form& form, Property property) = 0;
    virtual void Control_Changed(Control& control, Property property) = 0;
    virtual void Focus_Changed(Form& form) = 0;
    virtual void Pointer_Changed() = 0; // a form's or the screen's mouse pointer

    // Takes input until form.Is_Visible() is false. Fails with an automation::Failure when nothing can be
    // shown.
    virtual void Run_Modal(Form& form) = 0;
    virtual void Process_Pending_Messages() = 0;
    // The answer, or answer::Not_Shown.
    virtual automation::Long Show_Message(const Message& message) = 0;
};

// The Display of the calling thread: the installed one, or one that the thread gets of its own
// (toolkit/display_factory.h) and keeps to its end. When there is none to be had, forms can be loaded but not
// shown: showing one modally fails and a message box answers Not_Shown.
Display& Current_Display();
// Null takes the installed one away.
void Set_Display(Display* display);

automation::Long Show_Message(const Message& message);

// The screen of the calling thread's Display.
namespace screen {
Size Screen_Size();
automation::Integer Mouse_Pointer();
void Set_Mouse_Pointer(automation::Integer pointer);
} // namespace screen

// Values of a mouse pointer.
constexpr automation::Integer Pointer_Default = 0;
constexpr automation::Integer Pointer_Hourglass = 11;

} // namespace toolkit
