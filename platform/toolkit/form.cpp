#include "toolkit/form.h"

#include <algorithm>
#include <map>

namespace toolkit {

namespace {

// The calling thread's loaded forms, chained in the order of loading. A plain pointer, so that a form that is
// kept until the thread ends still finds it.
thread_local Form* first_loaded = nullptr;

} // namespace

Form::Form(const Form_Design& design)
    : name(design.Name), face(design.Face), border(design.Border),
      caption(design.Caption), place{0, 0, design.Client.Width + design.Border.Width,
                                     design.Client.Height + design.Border.Height} {}

Form::~Form() {
    Leave_Chain();
}

void Form::Join_Chain() {
    Form** end = &first_loaded;
    while (*end)
        end = &(*end)->next_loaded;
    *end = this;
}

void Form::Leave_Chain() {
    for (Form** link = &first_loaded; *link; link = &(*link)->next_loaded)
        if (*link == this) {
            *link = std::exchange(next_loaded, nullptr);
            return;
        }
}

Control* Form::Find(String_View control_name) const {
    const auto found = std::find_if(controls.begin(), controls.end(),
                                    [&](const Control* control) { return control->Name() == control_name; });
    return found == controls.end() ? nullptr : *found;
}

void Form::Require_Present() const {
    if (Is_Gone())
        throw Form_Gone{};
}

void Form::Prepare_Write() {
    if (life != Life::Loaded)
        Load();
}

void Form::Load() {
    Require_Present();
    if (Is_Loaded())
        return;
    display = &Current_Display();
    display->Form_Loaded(*this);
    life = Life::Loaded;
    Join_Chain();
}

void Form::Show_Modal() {
    if (Is_Gone())
        return;
    const auto keep = shared_from_this();
    Load();
    if (visible)
        throw automation::Failure(400, u"Form already displayed; can't show modally");
    visible = true;
    try {
        display->Form_Changed(*this, Property::Visible);
        display->Run_Modal(*this);
    } catch (...) {
        visible = false;
        throw;
    }
}

void Form::Hide() {
    Prepare_Write();
    if (std::exchange(visible, false))
        display->Form_Changed(*this, Property::Visible);
}

void Form::Unload() {
    if (!Is_Loaded())
        return;
    const auto keep = shared_from_this();
    bool cancel = false;
    On_Unload(cancel);
    if (!cancel && Is_Loaded())
        Discard();
}

void Form::Discard() {
    life = Life::Gone;
    visible = false;
    Leave_Chain();
    std::exchange(display, nullptr)->Form_Unloaded(*this);
    On_Discarded();
}

const String& Form::Caption() const {
    Require_Present();
    return caption;
}

void Form::Set_Caption(String_View value) {
    Prepare_Write();
    if (caption == value)
        return;
    caption = value;
    display->Form_Changed(*this, Property::Caption);
}

const Rectangle& Form::Place() const {
    Require_Present();
    return place;
}

void Form::Move(const Rectangle& wanted) {
    Prepare_Write();
    if (wanted.Width < 0 || wanted.Height < 0)
        automation::Raise(automation::run_time::Invalid_Property_Value);
    if (std::exchange(place, wanted) != wanted)
        display->Form_Changed(*this, Property::Geometry);
}

void Form::Set_Mouse_Pointer(automation::Integer pointer) {
    if (std::exchange(mouse_pointer, pointer) != pointer && Is_Loaded())
        display->Pointer_Changed();
}

Control* Form::Focused() const {
    Require_Present();
    return focused ? focused : Next_Tab_Stop(nullptr);
}

namespace {

// In tab order when `direction` is 1, against it when it is -1, wrapping around; of those that are
// `eligible`.
template <typename Predicate>
Control* Neighbour(const std::vector<Control*>& controls, const Control* from, int direction,
                   Predicate eligible) {
    Control* first = nullptr;
    Control* next = nullptr;
    auto before = [direction](const Control* one, const Control* other) {
        return one->Tab_Index() * direction < other->Tab_Index() * direction;
    };
    for (Control* control : controls) {
        if (!eligible(*control))
            continue;
        if (!first || before(control, first))
            first = control;
        if (from && before(from, control) && (!next || before(control, next)))
            next = control;
    }
    return next ? next : first;
}

bool Is_Stop(const Control& control) {
    return control.Is_Tab_Stop();
}

Option_Button& Option_Beside(const std::vector<Control*>& controls, Option_Button& from, int direction) {
    Control* const found = Neighbour(controls, &from, direction, [&](const Control& control) {
        return control.Kind() == from.Kind() && control.Container() == from.Container() &&
               control.Is_Reachable();
    });
    return found ? static_cast<Option_Button&>(*found) : from;
}

} // namespace

Control* Form::Next_Tab_Stop(const Control* from) const {
    return Neighbour(controls, from, 1, Is_Stop);
}

Control* Form::Previous_Tab_Stop(const Control* from) const {
    return Neighbour(controls, from, -1, Is_Stop);
}

Option_Button& Form::Next_Option(Option_Button& from) const {
    return Option_Beside(controls, from, 1);
}

Option_Button& Form::Previous_Option(Option_Button& from) const {
    return Option_Beside(controls, from, -1);
}

void Form::User_Move_Focus(Control& control) {
    Control* const old = Focused();
    focused = &control;
    if (old == &control)
        return;
    display->Focus_Changed(*this);
    if (old)
        old->Raise(old->On_Lost_Focus);
}

void Form::Focus_May_Have_Gone() {
    if (!focused || focused->Is_Tab_Stop())
        return;
    if (Control* next = Next_Tab_Stop(focused))
        User_Move_Focus(*next);
    else
        focused = nullptr;
}

void Discard_All_Forms() {
    while (first_loaded) { // one that goes may take others with it
        const auto form = first_loaded->shared_from_this();
        form->Discard();
    }
}

std::vector<Form*> Loaded_Forms() {
    std::vector<Form*> forms;
    for (Form* form = first_loaded; form; form = form->next_loaded)
        forms.push_back(form);
    return forms;
}

std::shared_ptr<Form>& Thread_Instance(const void* form_class) {
    thread_local std::map<const void*, std::shared_ptr<Form>> instances;
    return instances[form_class];
}

} // namespace toolkit
