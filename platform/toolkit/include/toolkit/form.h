// A form: controls, focus, default and cancel button, and a life from loading to unloading.
//
// Forms are made with std::make_shared and belong to the thread that made them. A handler may unload the form
// while handlers of the same form are on the stack: the object lives until the outermost of them has ended,
// everything that touches it meanwhile throws Form_Gone.
#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "toolkit/control.h"

namespace toolkit {

// A picture that the form's designer laid down, by id: the bytes of a bitmap file; empty when there is none.
// The form's icon is picture 0.
constexpr automation::Long Icon_Picture = 0;
using Picture_Source = std::function<std::basic_string_view<unsigned char>(automation::Long id)>;

struct Form_Design {
    String_View Name;
    String_View Caption;
    Size Client;
    Size Border; // what the outer size adds to the client area
    Font Face = {};
};

class Form : public std::enable_shared_from_this<Form> {
public:
    explicit Form(const Form_Design& design);
    virtual ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const String& Name() const { return name; }
    const Font& Face() const { return face; }
    // In the order of their ids, which is also the order from back to front.
    const std::vector<Control*>& Controls() const { return controls; }
    Control* Find(String_View control_name) const; // exact name; null when there is none
    const Picture_Source& Pictures() const { return pictures; }

    bool Is_Loaded() const { return life == Life::Loaded; }
    bool Is_Gone() const { return life == Life::Gone; }
    bool Is_Visible() const { return visible; }

    // Nothing for a form that is loaded; Form_Gone for one that has been unloaded.
    void Load();
    // Blocks until the form is hidden or unloaded. Does nothing for a form that is gone.
    void Show_Modal();
    void Hide();
    // Asks On_Unload first; a second unload is a no-op.
    void Unload();

    const String& Caption() const;
    void Set_Caption(String_View value);
    // Outer place on the screen and outer size.
    const Rectangle& Place() const;
    void Move(const Rectangle& place); // 380 for a negative extent
    const Size& Border() const { return border; }

    // Setting the pointer neither loads the form nor minds that it is gone.
    automation::Integer Mouse_Pointer() const { return mouse_pointer; }
    void Set_Mouse_Pointer(automation::Integer pointer);

    // Until a person moves it, the focus is on the first tab stop. Null when there is none.
    Control* Focused() const;
    Command_Button* Default_Button() const { return default_button; }
    Command_Button* Cancel_Button() const { return cancel_button; }
    // The tab stop after `from` in tab order, wrapping around; from null: the first one.
    Control* Next_Tab_Stop(const Control* from) const;
    Control* Previous_Tab_Stop(const Control* from) const; // from null: the last one
    // The same among the options that share its container; itself when no other can be reached.
    Option_Button& Next_Option(Option_Button& from) const;
    Option_Button& Previous_Option(Option_Button& from) const;

    // For toolkit/user_input.h: raises the old control's On_Lost_Focus after the move.
    void User_Move_Focus(Control& control);

protected:
    // The form is about to close; setting `cancel` keeps it open. Must not throw anything but Form_Gone.
    virtual void On_Unload(bool& cancel) { (void)cancel; }
    // The form is gone, whether it was unloaded or discarded.
    virtual void On_Discarded() {}

    void Set_Default_Button(Command_Button& button) { default_button = &button; }
    void Set_Cancel_Button(Command_Button& button) { cancel_button = &button; }
    void Set_Pictures(Picture_Source source) { pictures = std::move(source); }

private:
    friend class Control;
    friend void Discard_All_Forms();
    friend std::vector<Form*> Loaded_Forms();
    enum class Life { Created, Loaded, Gone };

    void Require_Present() const;
    void Prepare_Write();
    void Discard();
    void Join_Chain();
    void Leave_Chain();
    void Focus_May_Have_Gone();

    const String name;
    const Font face;
    const Size border;
    std::vector<Control*> controls;
    Picture_Source pictures;
    Life life = Life::Created;
    Form* next_loaded = nullptr;
    bool visible = false;
    Display* display = nullptr;
    String caption;
    Rectangle place;
    automation::Integer mouse_pointer = Pointer_Default;
    Control* focused = nullptr; // null: nobody has moved the focus yet
    Command_Button* default_button = nullptr;
    Command_Button* cancel_button = nullptr;
};

// Drops the calling thread's loaded forms without asking. A host calls it before its Display goes.
void Discard_All_Forms();

// A form that the calling thread keeps for its class, under an address that stands for the class; unset at
// first. It goes at the thread's end. (A module's own thread-local object would keep the module loaded.)
std::shared_ptr<Form>& Thread_Instance(const void* form_class);

// The loaded forms of the calling thread, in the order they were loaded.
std::vector<Form*> Loaded_Forms();

} // namespace toolkit
