#include "typed_input.h"

#include <algorithm>

#include "pop_up_list.h"
#include "toolkit/display_texts.h"

namespace terminal {

namespace user_input = toolkit::user_input;
using automation::Long;
using toolkit::Control;
using Refusal = toolkit::Input_Driver::Refusal;

namespace {

constexpr const char* Tab = "\t";
constexpr const char* Back_Tab = "\033[Z";
constexpr const char* Home = "\033[H";
constexpr const char* End = "\033[F";
constexpr const char* Right = "\033[C";
constexpr const char* Down = "\033[B";
constexpr const char* Open_List = "\033OS";
constexpr const char* Enter = "\r";
constexpr const char* Escape = "\033";
constexpr const char* Erase = "\x7F";
constexpr const char* Delete = "\033[3~";
constexpr const char* Select_All = "\001";
constexpr const char* Close_Box = "\021";

// What a terminal sends for the text; empty when that is none that could be typed.
std::string Typed(String_View text) {
    const bool printable = std::all_of(
        text.begin(), text.end(), [](char16_t unit) { return unit >= u' ' && (unit < 0x7F || unit > 0x9F); });
    const std::string sent = printable ? automation::To_UTF8(text) : std::string();
    return automation::From_UTF8(sent) == text ? sent : std::string();
}

std::string Pasted(const std::string& typed) {
    return "\033[200~" + typed + "\033[201~";
}

bool Has_Focus(const Control& control) {
    return control.Owner_Form().Focused() == &control;
}

} // namespace

std::string Key_Of_Answer(Long answer) {
    namespace answers = toolkit::answer;
    namespace texts = toolkit::display_text;
    const auto letter = [](String_View caption) { return automation::To_UTF8(caption.substr(0, 1)); };
    return answer == answers::Save      ? letter(texts::Save)
           : answer == answers::Discard ? letter(texts::Discard)
           : answer == answers::Cancel  ? letter(texts::Cancel)
                                        : Enter;
}

void Typed_Input::Send(const Keys& sent) {
    device.Add(sent);
    while (!device.Is_Empty()) {
        const Key key = screen.Wait_For_Key();
        if (key.Which == Key::Name::Gone)
            throw automation::Failure(automation::Status_Unspecified, screen.Ending());
        keys.Press(key);
        if (!view.Shown() || !view.Shown()->Is_Visible())
            device.Clear();
    }
}

void Typed_Input::Go_To(Control& control) {
    const toolkit::Form& form = control.Owner_Form();
    if (Has_Focus(control))
        return;
    if (form.Next_Tab_Stop(form.Focused()) == &control)
        Send({Tab});
    else if (form.Previous_Tab_Stop(form.Focused()) == &control)
        Send({Back_Tab});
    else
        user_input::Focus(control);
}

Refusal Typed_Input::Focus(Control& control) {
    Refusal refusal = user_input::Can_Focus(control);
    if (!refusal)
        Go_To(control);
    return refusal;
}

Refusal Typed_Input::Enter_Text(Control& control) {
    Refusal refusal = user_input::Can_Edit(control);
    if (refusal || Has_Focus(control))
        return refusal;
    Go_To(control);
    // A handler that the move ran may have switched it off.
    if (!user_input::Can_Edit(control))
        Send({End});
    return {};
}

Refusal Typed_Input::Type(Control& control, toolkit::String_View character) {
    const std::string key = Typed(character);
    if (key.empty() || !Has_Focus(control))
        return user_input::Type(control, character);
    Refusal refusal = user_input::Can_Edit(control);
    if (!refusal)
        Send({key});
    return refusal;
}

Refusal Typed_Input::Backspace(Control& control) {
    if (!Has_Focus(control))
        return user_input::Backspace(control);
    Refusal refusal = user_input::Can_Edit(control);
    if (!refusal)
        Send({Erase});
    return refusal;
}

// By the keys that move the caret; false when none leads there.
bool Typed_Input::Select(toolkit::Text_Control& field, std::size_t start, std::size_t length) {
    const std::size_t size = field.Text().size();
    if (start == 0 && length >= size) {
        Send({Select_All});
        return true;
    }
    Send({Home});
    while (field.Selection_Start() < std::min(start, size))
        Send({Right});
    return length == 0 && field.Selection_Start() == std::min(start, size);
}

Refusal Typed_Input::Replace(Control& control, std::size_t start, std::size_t length,
                             toolkit::String_View text) {
    if (auto refusal = user_input::Can_Edit(control))
        return refusal;
    Go_To(control);
    if (user_input::Can_Edit(control))
        return {};
    auto& field = static_cast<toolkit::Text_Control&>(control);
    const std::string typed = Typed(text);
    if (typed.empty() != text.empty() || !Select(field, start, length))
        return user_input::Replace(control, start, length, text);
    if (!text.empty())
        Send({Pasted(typed)});
    else if (length > 0 && !field.Text().empty())
        Send({Delete});
    return {};
}

Refusal Typed_Input::Pick(Control& control, Long index) {
    if (auto refusal = user_input::Can_Pick(control, index))
        return refusal;
    Go_To(control);
    if (user_input::Can_Pick(control, index))
        return {};
    const auto& list = static_cast<toolkit::List_Control&>(control);
    if (control.Kind() != toolkit::Control_Kind::Combo_Box)
        return user_input::Pick(control, index);
    Keys sent{Open_List};
    const std::string typed = Typed(list.Item(index));
    if (!typed.empty() && Find_Entry(list, list.Item(index), 0) == index) {
        sent.push_back(typed);
    } else {
        sent.emplace_back(Home);
        sent.insert(sent.end(), static_cast<std::size_t>(index), Down);
    }
    sent.emplace_back(Enter);
    Send(sent);
    return {};
}

Refusal Typed_Input::Press(Control& control) {
    if (auto refusal = user_input::Can_Press(control))
        return refusal;
    Go_To(control);
    if (!user_input::Can_Press(control))
        Send({" "});
    return {};
}

Refusal Typed_Input::Press_Key(toolkit::Form& form, user_input::Key key) {
    Refusal refusal = user_input::Can_Press_Key(form, key);
    if (!refusal)
        Send({key == user_input::Key::Enter ? Enter : key == user_input::Key::Escape ? Escape : Tab});
    return refusal;
}

Refusal Typed_Input::Close(toolkit::Form& form) {
    Refusal refusal = user_input::Can_Close(form);
    if (!refusal)
        Send({Close_Box});
    return refusal;
}

} // namespace terminal
