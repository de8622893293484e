// What a key does to a form, through the verbs of toolkit/user_input.h.
#pragma once

#include <chrono>

#include "form_view.h"

namespace terminal {

class Form_Keys {
public:
    // Both outlive it.
    Form_Keys(Screen& screen, Form_View& view) : screen(screen), view(view) {}

    // The form may be gone afterwards. Throws what a handler threw.
    void Press(const Key& key);

private:
    void Press_In_Form(toolkit::Form& form, const Key& key);
    bool Move_Or_Leave(toolkit::Form& form, Key::Name key);
    void Press_Access_Key(toolkit::Form& form, String_View letter);
    bool Press_In(toolkit::Control& control, const Key& key);
    bool Edit(toolkit::Text_Control& field, const Key& key);
    bool Delete(toolkit::Text_Control& field, bool back);
    void Insert(toolkit::Text_Control& field, const Key& key);
    bool Press_In_List(toolkit::List_Control& list, const Key& key);
    bool Press_On_Option(toolkit::Option_Button& option, const Key& key);
    void Open_List(toolkit::List_Control& list, const String& typed);
    void Search(toolkit::List_Control& list, const String& letter);
    void Refuse(String why);

    Screen& screen;
    Form_View& view;
    const toolkit::Control* selected = nullptr; // the next key replaces its whole text
    const toolkit::Control* selected_before = nullptr;
    String typed; // to find an entry of a list box
    std::chrono::steady_clock::time_point typed_at;
};

} // namespace terminal
