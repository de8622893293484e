#include "form_keys.h"

#include <utility>

#include "pop_up_list.h"
#include "toolkit/display_texts.h"
#include "toolkit/edit_answer.h"
#include "toolkit/user_input.h"

namespace terminal {

namespace texts = toolkit::display_text;
namespace user_input = toolkit::user_input;
using toolkit::Control;
using toolkit::Form;

namespace {

bool Is_Space(const Key& key) {
    return key.Which == Key::Name::Character && key.Text == u" ";
}

} // namespace

void Form_Keys::Press(const Key& key) {
    Form* const form = view.Shown();
    if (!form)
        return;
    const auto keep = form->shared_from_this();
    view.Set_Notice({});
    selected_before = std::exchange(selected, nullptr);
    try {
        Press_In_Form(*form, key);
    } catch (const toolkit::Form_Gone&) {
    }
}

void Form_Keys::Refuse(String why) {
    screen.Alert();
    view.Set_Notice(std::move(why));
}

void Form_Keys::Press_In_Form(Form& form, const Key& key) {
    if (Move_Or_Leave(form, key.Which))
        return;
    if (key.Alt)
        return Press_Access_Key(form, key.Text);
    Control* const focused = form.Focused();
    if (!focused || !Press_In(*focused, key))
        Refuse(String(texts::No_Such_Key));
}

bool Form_Keys::Move_Or_Leave(Form& form, Key::Name key) {
    switch (key) {
    case Key::Name::Tab:
        user_input::Press_Key(form, user_input::Key::Tab);
        return true;
    case Key::Name::Back_Tab:
        if (Control* previous = form.Previous_Tab_Stop(form.Focused()))
            user_input::Focus(*previous);
        return true;
    case Key::Name::Enter:
        if (user_input::Press_Key(form, user_input::Key::Enter))
            Refuse(String(texts::No_Enter));
        return true;
    case Key::Name::Escape:
        if (user_input::Press_Key(form, user_input::Key::Escape))
            Refuse(String(texts::No_Escape));
        return true;
    case Key::Name::Close:
        user_input::Close(form);
        return true;
    case Key::Name::Interrupt:
        Refuse(String(texts::No_Interrupt));
        return true;
    default:
        return false;
    }
}

void Form_Keys::Press_Access_Key(Form& form, String_View letter) {
    for (Control* control : form.Controls()) {
        if (!Marked_Caption(control->Caption()).Answers(letter))
            continue;
        Control* const target = Led_To(*control);
        if (!target || !target->Is_Reachable())
            continue;
        if (target != control || user_input::Press(*target))
            user_input::Focus(*target);
        return;
    }
    Refuse(String(texts::No_Letter));
}

bool Form_Keys::Press_In(Control& control, const Key& key) {
    if (auto* list = dynamic_cast<toolkit::List_Control*>(&control); list && Press_In_List(*list, key))
        return true;
    if (auto* field = dynamic_cast<toolkit::Text_Control*>(&control); field && field->Is_Editable())
        return Edit(*field, key);
    if (auto* option = dynamic_cast<toolkit::Option_Button*>(&control))
        return Press_On_Option(*option, key);
    if (control.Kind() != toolkit::Control_Kind::Command_Button || !Is_Space(key))
        return false;
    user_input::Press(control);
    return true;
}

// Text

bool Form_Keys::Edit(toolkit::Text_Control& field, const Key& key) {
    const String text = field.Text();
    const std::size_t caret = field.Selection_Start();
    switch (key.Which) {
    case Key::Name::Left:
        field.Set_Selection_Start(Cluster_Before(text, caret));
        return true;
    case Key::Name::Right:
        field.Set_Selection_Start(Cluster_Behind(text, caret));
        return true;
    case Key::Name::Home:
        field.Set_Selection_Start(0);
        return true;
    case Key::Name::End:
        field.Set_Selection_Start(text.size());
        return true;
    case Key::Name::Select_All:
        selected = &field;
        view.Set_Notice(String(texts::Replaces));
        return true;
    case Key::Name::Backspace:
    case Key::Name::Delete:
        return Delete(field, key.Which == Key::Name::Backspace);
    case Key::Name::Character:
    case Key::Name::Paste:
        Insert(field, key);
        return true;
    default:
        return false;
    }
}

bool Form_Keys::Delete(toolkit::Text_Control& field, bool back) {
    const std::size_t size = field.Text().size();
    const std::size_t caret = field.Selection_Start();
    const bool all = selected_before == &field;
    if (size == 0 || (!all && caret == (back ? 0 : size)))
        return false;
    if (all)
        user_input::Replace(field, 0, String::npos, {});
    else if (back)
        user_input::Backspace(field);
    else
        user_input::Replace(field, caret, Cluster_Behind(field.Text(), caret) - caret, {});
    return true;
}

void Form_Keys::Insert(toolkit::Text_Control& field, const Key& key) {
    const String before = field.Text();
    const std::size_t caret = field.Selection_Start();
    if (selected_before == &field)
        user_input::Replace(field, 0, String::npos, key.Text);
    else if (key.Which == Key::Name::Character)
        user_input::Type(field, key.Text);
    else
        user_input::Replace(field, field.Selection_Start(), 0, key.Text);
    if (!view.Shown() || key.Text.empty())
        return;
    const String wanted = selected_before == &field ? key.Text : String(before).insert(caret, key.Text);
    if (String answer = toolkit::Answer_To_Edit(field, before, wanted); !answer.empty())
        Refuse(std::move(answer));
}

// Lists

bool Form_Keys::Press_In_List(toolkit::List_Control& list, const Key& key) {
    const bool drops_down = list.Kind() == toolkit::Control_Kind::Combo_Box;
    const bool is_text = key.Which == Key::Name::Character;
    if (drops_down && key.Which == Key::Name::Open_List) {
        Open_List(list, {});
        return true;
    }
    if (list.Is_Editable() && key.Which != Key::Name::Up && key.Which != Key::Name::Down)
        return false;
    if (is_text && drops_down)
        Open_List(list, Is_Space(key) ? String() : key.Text);
    else if (is_text)
        Search(list, key.Text);
    const automation::Long here = list.Selected_Index();
    const auto index = Moved_Index(key, here, list.Count(), 8);
    if (index && *index != here && list.Count() > 0)
        user_input::Pick(list, *index);
    return is_text || index;
}

void Form_Keys::Open_List(toolkit::List_Control& list, const String& wanted) {
    if (const auto index = Pick_From_List(screen, view, list, wanted))
        user_input::Pick(list, *index);
}

// Letters in quick succession are one search.
void Form_Keys::Search(toolkit::List_Control& list, const String& letter) {
    constexpr std::chrono::milliseconds Pause{1000};
    const auto now = std::chrono::steady_clock::now();
    const bool goes_on = !typed.empty() && now - typed_at < Pause;
    typed_at = now;
    typed = goes_on ? typed + letter : letter;
    const automation::Long found = Find_Entry(list, typed, list.Selected_Index() + (goes_on ? 0 : 1));
    if (found >= 0)
        user_input::Pick(list, found);
    else
        Refuse(String(texts::No_Entry) + u" " + typed);
}

// Options

bool Form_Keys::Press_On_Option(toolkit::Option_Button& option, const Key& key) {
    const bool back = key.Which == Key::Name::Up || key.Which == Key::Name::Left;
    const bool forward = key.Which == Key::Name::Down || key.Which == Key::Name::Right;
    if (!back && !forward && !Is_Space(key))
        return false;
    Form& form = option.Owner_Form();
    user_input::Press(back ? form.Previous_Option(option) : forward ? form.Next_Option(option) : option);
    return true;
}

} // namespace terminal
