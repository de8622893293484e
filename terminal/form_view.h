// A form on the screen: a box with a title, the controls in it, and a line of hints below.
//
// It shows its controls and never changes them, and does not touch the form after Detach.
#pragma once

#include "layout.h"
#include "screen.h"

namespace terminal {

class Form_View final : public Layer {
public:
    explicit Form_View(toolkit::Form& form) : form(&form) {}

    // The form goes.
    void Detach() { form = nullptr; }
    toolkit::Form* Shown() const { return form; }

    // In place of the hints, until the next one.
    void Set_Notice(String text) { notice = std::move(text); }
    // Where the control was painted last; nothing when it is not in view.
    std::optional<Cells> Place_Of(const toolkit::Control& control) const;

    void Paint(Screen& screen) override;

private:
    void Place_On(const Screen& screen);
    void Scroll_To_Focus();
    void Paint_Border(Screen& screen) const;
    void Paint_Hints(Screen& screen) const;
    void Paint_Control(Screen& screen, const Placed& placed) const;
    void Paint_Label(Screen& screen, const toolkit::Label& label, const Cells& place) const;
    void Paint_Frame(Screen& screen, const toolkit::Control& frame, const Cells& place) const;
    void Paint_Field(Screen& screen, const toolkit::Text_Control& field, const Cells& place) const;
    void Paint_Option(Screen& screen, const toolkit::Option_Button& option, const Cells& place) const;
    void Paint_Button(Screen& screen, const toolkit::Control& button, const Cells& place) const;
    bool Has_Focus(const toolkit::Control& control) const;

    toolkit::Form* form; // null: gone
    String notice;
    Layout layout;
    Cells box;  // on the screen
    Cells view; // the part of it that shows the client area
    int scrolled_rows = 0;
    int scrolled_columns = 0;
};

// Enabled together with everything that contains it.
bool Is_Live(const toolkit::Control& control);

// What a caption's access key leads to: the control itself, or the field that follows a label or a frame;
// null for none.
toolkit::Control* Led_To(toolkit::Control& control);

// The list's entries from `first` on, one a row.
void Paint_Entries(Screen& screen, const toolkit::List_Control& list, const Cells& place,
                   automation::Long first, automation::Long selected, Look selected_look);

} // namespace terminal
