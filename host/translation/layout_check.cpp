#include "layout_check.h"

#include <algorithm>
#include <map>
#include <optional>

#include "automation/text.h"

namespace host {

namespace {

using toolkit::Control;
using toolkit::Control_Kind;
using toolkit::Rectangle;
using toolkit::Twips;

// What a control draws beside its caption: the circle of an option, the borders of a button, the gap in a
// frame's line.
constexpr Twips Option_Circle = 17 * toolkit::Twips_Per_Pixel;
constexpr Twips Button_Borders = 8 * toolkit::Twips_Per_Pixel;
constexpr Twips Frame_Corners = 18 * toolkit::Twips_Per_Pixel;

Twips Text_Width(const Control& control) {
    return toolkit::Design_Text_Size(control.Face(), toolkit::Drawn_Caption(control.Caption())).Width;
}

Twips Width_Of_Container(const toolkit::Form& form, const Control& control) {
    return control.Container() ? control.Container()->Width() : form.Place().Width - form.Border().Width;
}

bool Share_A_Line(const Rectangle& one, const Rectangle& other) {
    return one.Top < other.Top + other.Height && other.Top < one.Top + one.Height;
}

// The room that a label has: to the next control on its right, or to the edge.
Twips Room_Of_Label(const toolkit::Form& form, const Control& label) {
    Twips end = Width_Of_Container(form, label);
    for (const Control* other : form.Controls())
        if (other != &label && other->Visible() && other->Container() == label.Container() &&
            other->Left() > label.Left() && Share_A_Line(label.Place(), other->Place()))
            end = std::min(end, other->Left());
    return end - label.Left();
}

Twips Needed(const Control& control) {
    switch (control.Kind()) {
    case Control_Kind::Option_Button:
        return Text_Width(control) + Option_Circle;
    case Control_Kind::Command_Button:
        return Text_Width(control) + Button_Borders;
    case Control_Kind::Frame:
        return Text_Width(control) + Frame_Corners;
    default:
        return Text_Width(control);
    }
}

std::optional<std::string> Overflow(const toolkit::Form& form, const Control& control) {
    const Twips room = control.Kind() == Control_Kind::Label ? Room_Of_Label(form, control) : control.Width();
    const Twips over = Needed(control) - room;
    if (over <= 0)
        return std::nullopt;
    return "overflows its place by " +
           std::to_string((over + toolkit::Twips_Per_Pixel - 1) / toolkit::Twips_Per_Pixel) + " pixels";
}

// A control that has left its container to the right cannot be reached.
std::optional<std::string> Displacement(const toolkit::Form& form, const Control& control) {
    if (control.Left() >= 0 && control.Left() + control.Width() <= Width_Of_Container(form, control))
        return std::nullopt;
    return automation::To_UTF8(control.Name()) + " does not fit into the window";
}

std::optional<char16_t> Access_Key(const Control& control) {
    const toolkit::String& caption = control.Caption();
    for (std::size_t at = 0; at + 1 < caption.size(); ++at)
        if (caption[at] == u'&') {
            if (caption[at + 1] != u'&')
                return automation::Case_Folded(caption.substr(at + 1, 1)).front();
            ++at;
        }
    return std::nullopt;
}

} // namespace

std::vector<Form_Problem> Problems_Of(const toolkit::Form& form) {
    std::vector<Form_Problem> problems;
    std::map<char16_t, const Control*> keys;
    for (const Control* control : form.Controls()) {
        if (!control->Visible())
            continue;
        if (const auto problem = Displacement(form, *control))
            problems.push_back({control->Caption(), *problem});
        if (control->Caption().empty())
            continue;
        if (const auto problem = Overflow(form, *control))
            problems.push_back({control->Caption(), *problem});
        const auto key = Access_Key(*control);
        if (key && !keys.emplace(*key, control).second)
            problems.push_back(
                {control->Caption(),
                 "has the access key of \"" + automation::To_UTF8(keys.at(*key)->Caption()) + "\""});
    }
    return problems;
}

} // namespace host
