#include "toolkit/control.h"

#include <algorithm>

#include "toolkit/form.h"

namespace toolkit {

String_View Kind_Name(Control_Kind kind) {
    switch (kind) {
    case Control_Kind::Label:
        return u"label";
    case Control_Kind::Text_Box:
        return u"text box";
    case Control_Kind::Combo_Box:
        return u"combo box";
    case Control_Kind::List_Box:
        return u"list box";
    case Control_Kind::Option_Button:
        return u"option button";
    case Control_Kind::Frame:
        return u"frame";
    case Control_Kind::Command_Button:
        return u"command button";
    }
    return {};
}

Control::Control(Form& form, Control_Kind kind, const Design& design)
    : form(form), kind(kind), id(design.Id), name(design.Name), container(design.Container),
      tab_index(design.Tab_Index), face(design.Face), place(design.Place), caption(design.Caption),
      visible(design.Visible) {
    auto& controls = form.controls;
    const auto behind =
        std::find_if(controls.begin(), controls.end(), [&](const Control* other) { return other->id > id; });
    controls.insert(behind, this);
}

void Control::Begin_Write() const {
    form.Prepare_Write();
}

void Control::Notify(Property property) {
    if (form.Is_Loaded())
        form.display->Control_Changed(*this, property);
}

void Control::Raise(const Handler& handler) {
    if (!handler)
        return;
    const auto keep = form.shared_from_this();
    handler();
    form.Require_Present();
}

template <typename Value>
bool Control::Store(Value& member, const Value& value, Property property) {
    Begin_Write();
    if (member == value)
        return false;
    member = value;
    Notify(property);
    return true;
}

const Rectangle& Control::Place() const {
    form.Require_Present();
    return place;
}

void Control::Move(Twips left, std::optional<Twips> top, std::optional<Twips> width,
                   std::optional<Twips> height) {
    Begin_Write();
    const Rectangle wanted{left, top.value_or(place.Top), width.value_or(place.Width),
                           height.value_or(place.Height)};
    if (wanted.Width < 0 || wanted.Height < 0)
        automation::Raise(automation::run_time::Invalid_Property_Value);
    Store(place, wanted, Property::Geometry);
}

bool Control::Enabled() const {
    form.Require_Present();
    return enabled;
}

void Control::Set_Enabled(bool value) {
    if (Store(enabled, value, Property::Enabled))
        Reachability_Changed();
}

bool Control::Visible() const {
    form.Require_Present();
    return visible;
}

void Control::Set_Visible(bool value) {
    if (Store(visible, value, Property::Visible))
        Reachability_Changed();
}

void Control::Reachability_Changed() {
    form.Focus_May_Have_Gone();
}

const String& Control::Caption() const {
    form.Require_Present();
    return caption;
}

void Control::Set_Caption(String_View value) {
    if (Store(caption, String(value), Property::Caption))
        Caption_Changed();
}

bool Control::Is_Reachable() const {
    form.Require_Present();
    return enabled && visible && (container == nullptr || container->Is_Reachable());
}

void Label::Caption_Changed() {
    if (!style.Auto_Size)
        return;
    const Size size = Current_Display().Text_Size(Face(), Drawn_Caption(Caption()));
    Move(Left(), Top(), size.Width, size.Height);
}

bool Option_Button::Value() const {
    (void)Place(); // Form_Gone
    return value;
}

void Option_Button::Set_Value(bool selected) {
    Begin_Write();
    if (selected) {
        Select();
    } else if (value) {
        value = false;
        Notify(Property::Value);
    }
    Raise(On_Click);
}

void Option_Button::User_Select() {
    if (!value)
        Set_Value(true);
}

void Option_Button::Select() {
    if (value)
        return;
    for (Control* other : Owner_Form().Controls()) {
        auto* sibling = dynamic_cast<Option_Button*>(other);
        if (sibling == nullptr || sibling->Container() != Container() || !sibling->value)
            continue;
        sibling->value = false;
        sibling->Notify(Property::Value);
    }
    value = true;
    Notify(Property::Value);
}

void Command_Button::Set_Value(bool pressed) {
    Begin_Write();
    if (pressed)
        Raise(On_Click);
}

void Command_Button::User_Press() {
    Raise(On_Click);
}

} // namespace toolkit
