#include "form_view.h"

#include <algorithm>

#include "toolkit/display_texts.h"

namespace terminal {

namespace texts = toolkit::display_text;
using toolkit::Control;
using toolkit::Control_Kind;

bool Is_Live(const Control& control) {
    for (const Control* outer = &control; outer; outer = outer->Container())
        if (!outer->Enabled())
            return false;
    return true;
}

Control* Led_To(Control& control) {
    if (control.Takes_Focus())
        return &control;
    Control* next = nullptr;
    for (Control* other : control.Owner_Form().Controls())
        if (other->Tab_Index() > control.Tab_Index() && (!next || other->Tab_Index() < next->Tab_Index()))
            next = other;
    if (control.Kind() == Control_Kind::Frame)
        return next && next->Container() == &control ? Led_To(*next) : nullptr;
    const bool is_field = next && next->Takes_Focus() && next->Kind() != Control_Kind::Command_Button;
    return is_field ? next : nullptr;
}

void Paint_Entries(Screen& screen, const toolkit::List_Control& list, const Cells& place,
                   automation::Long first, automation::Long selected, Look selected_look) {
    for (int row = 0; row < place.Rows; ++row) {
        const automation::Long index = first + row;
        const String text = index < list.Count() ? u" " + list.Item(index) : String();
        screen.Text({place.Row + row, place.Column, 1, place.Columns}, text,
                    index == selected ? selected_look : Look::Field);
    }
}

bool Form_View::Has_Focus(const Control& control) const {
    return form->Focused() == &control;
}

std::optional<Cells> Form_View::Place_Of(const Control& control) const {
    const Placed* const placed = layout.Find(&control);
    if (!placed)
        return {};
    Cells place = placed->Place;
    place.Row += view.Row - scrolled_rows;
    place.Column += view.Column - scrolled_columns;
    return place;
}

void Form_View::Place_On(const Screen& screen) {
    constexpr int Border = 2;
    constexpr int Margin = 2;
    layout = Lay_Out(*form, screen.Columns() - Border - Margin);
    const int rows_for_it = std::max(screen.Rows() - 1, 1); // the last one is for the hints
    box.Rows = std::min(layout.Rows + Border, rows_for_it);
    box.Columns = std::min(layout.Columns + Border, screen.Columns());
    box.Row = (rows_for_it - box.Rows) / 2;
    box.Column = (screen.Columns() - box.Columns) / 2;
    view = {box.Row + 1, box.Column + 1, box.Rows - Border, box.Columns - Border};
    Scroll_To_Focus();
}

namespace {

// Moves as little as needed to show `length` at `first`.
int Scrolled(int scrolled, int first, int length, int shown, int all) {
    scrolled = std::max(scrolled, first + length - shown);
    scrolled = std::min(scrolled, first);
    return std::clamp(scrolled, 0, std::max(all - shown, 0));
}

} // namespace

void Form_View::Scroll_To_Focus() {
    const Placed* const placed = layout.Find(form->Focused());
    const Cells place = placed ? placed->Place : Cells{};
    scrolled_rows = Scrolled(scrolled_rows, place.Row, place.Rows, view.Rows, layout.Rows);
    scrolled_columns = Scrolled(0, place.Column, place.Columns, view.Columns, layout.Columns);
}

void Form_View::Paint(Screen& screen) {
    if (!form)
        return;
    Place_On(screen);
    for (int row = 0; row < box.Rows; ++row)
        screen.Text({box.Row + row, box.Column, 1, box.Columns}, {}, Look::Plain);
    Paint_Border(screen);
    Paint_Hints(screen);
    screen.Set_View(view, scrolled_rows, scrolled_columns);
    for (const Placed& placed : layout.Controls)
        Paint_Control(screen, placed);
}

void Form_View::Paint_Border(Screen& screen) const {
    screen.Box(box, Look::Border);
    const String title = u" " + form->Caption() + u" ";
    const int room = std::max(box.Columns - 4, 0);
    screen.Text({box.Row, box.Column + 2, 1, std::min(Columns(title), room)}, title, Look::Title);
    const bool busy = form->Mouse_Pointer() == toolkit::Pointer_Hourglass ||
                      toolkit::screen::Mouse_Pointer() == toolkit::Pointer_Hourglass;
    const String mark = u" " + String(texts::Busy) + u" ";
    if (busy)
        screen.Text({box.Row, box.Column + box.Columns - 2 - Columns(mark), 1, Columns(mark)}, mark,
                    Look::Notice);
    const int right = box.Column + box.Columns - 1;
    if (scrolled_rows > 0)
        screen.Text({view.Row, right, 1, 1}, Symbol(u"\u25B2", u"^"), Look::Notice);
    if (scrolled_rows + view.Rows < layout.Rows)
        screen.Text({view.Row + view.Rows - 1, right, 1, 1}, Symbol(u"\u25BC", u"v"), Look::Notice);
}

void Form_View::Paint_Hints(Screen& screen) const {
    const Control* const focused = form->Focused();
    const bool in_list = focused && focused->Kind() == Control_Kind::Combo_Box;
    const bool in_button = focused && focused->Kind() == Control_Kind::Command_Button;
    const bool in_option = focused && focused->Kind() == Control_Kind::Option_Button;
    String hints(texts::Move);
    auto add = [&](const Control* button, String_View key) {
        if (button && button->Is_Reachable())
            hints += u"   " + String(key) + u": " + Marked_Caption(Button_Caption(*button)).Text;
    };
    if (in_list)
        hints += u"   " + String(texts::List);
    if (in_option)
        hints += u"   " + String(texts::Choose);
    add(in_button ? focused : form->Default_Button(), texts::Enter);
    add(form->Cancel_Button(), texts::Escape);
    screen.Centred({screen.Rows() - 1, 0, 1, screen.Columns()}, notice.empty() ? hints : notice,
                   notice.empty() ? Look::Hint : Look::Notice);
}

void Form_View::Paint_Control(Screen& screen, const Placed& placed) const {
    const Control& control = *placed.Control;
    const Cells& place = placed.Place;
    switch (control.Kind()) {
    case Control_Kind::Label:
        return Paint_Label(screen, static_cast<const toolkit::Label&>(control), place);
    case Control_Kind::Frame:
        return Paint_Frame(screen, control, place);
    case Control_Kind::Option_Button:
        return Paint_Option(screen, static_cast<const toolkit::Option_Button&>(control), place);
    case Control_Kind::Command_Button:
        return Paint_Button(screen, control, place);
    case Control_Kind::Text_Box:
    case Control_Kind::Combo_Box:
        return Paint_Field(screen, static_cast<const toolkit::Text_Control&>(control), place);
    case Control_Kind::List_Box:
        const auto& list = static_cast<const toolkit::List_Box&>(control);
        const automation::Long selected = list.Selected_Index();
        Paint_Entries(screen, list, place, std::max(selected - place.Rows + 1, 0), selected,
                      Has_Focus(list) ? Look::Focused : Look::Default);
        if (Has_Focus(list))
            screen.Cursor(place.Row + std::min(std::max(selected, 0), place.Rows - 1), place.Column);
    }
}

void Form_View::Paint_Label(Screen& screen, const toolkit::Label& label, const Cells& place) const {
    const Marked_Caption caption(label.Caption());
    const auto access = Led_To(const_cast<toolkit::Label&>(label)) ? caption.Access : std::nullopt;
    const Look look = Is_Live(label) ? Look::Plain : Look::Disabled;
    if (label.Look().Align == toolkit::Label::Alignment::Center)
        screen.Centred(place, caption.Text, look, access);
    else
        screen.Text(place, caption.Text, look, access);
}

void Form_View::Paint_Frame(Screen& screen, const Control& frame, const Cells& place) const {
    const Marked_Caption caption(frame.Caption());
    screen.Box(place, Look::Border);
    if (caption.Text.empty())
        return;
    const auto access = caption.Access ? std::optional(*caption.Access + 1) : std::nullopt;
    const String shown = u" " + caption.Text + u" ";
    screen.Text({place.Row, place.Column + 1, 1, Columns(shown)}, shown,
                Is_Live(frame) ? Look::Title : Look::Disabled, access);
}

namespace {

// The part of the text that shows the caret, and the caret's column in it.
std::pair<String_View, int> Seen_Part(String_View text, std::size_t caret, int columns) {
    std::size_t start = 0;
    while (start < caret && Columns(text.substr(start, caret - start)) >= columns)
        start = Cluster_Behind(text, start);
    return {text.substr(start), Columns(text.substr(start, caret - start))};
}

void Paint_Brackets(Screen& screen, const Cells& place, String_View left, String_View right) {
    screen.Text({place.Row, place.Column, 1, 1}, left, Look::Plain);
    screen.Text({place.Row, place.Column + place.Columns - 1, 1, 1}, right, Look::Plain);
}

} // namespace

// Brackets stand around what can be used, so that it shows without colours, too.
void Form_View::Paint_Field(Screen& screen, const toolkit::Text_Control& field, const Cells& place) const {
    const bool live = Is_Live(field);
    const bool focused = Has_Focus(field);
    const bool has_list = field.Kind() == Control_Kind::Combo_Box;
    Cells inside{place.Row, place.Column + 1, 1, place.Columns - 2 - (has_list ? 1 : 0)};
    const std::size_t caret = focused && field.Is_Editable() ? field.Selection_Start() : 0;
    const auto [text, column] = Seen_Part(field.Text(), std::min(caret, field.Text().size()), inside.Columns);
    screen.Text(inside, text, focused ? Look::Focused : live ? Look::Field : Look::Disabled);
    if (live)
        Paint_Brackets(screen, place, u"[", u"]");
    if (live && has_list)
        screen.Text({place.Row, place.Column + place.Columns - 2, 1, 1}, Symbol(u"\u25BC", u"v"),
                    Look::Plain);
    if (focused)
        screen.Cursor(inside.Row, inside.Column + column);
}

void Form_View::Paint_Option(Screen& screen, const toolkit::Option_Button& option, const Cells& place) const {
    const Marked_Caption caption(option.Caption());
    const bool live = Is_Live(option);
    const Look look = Has_Focus(option) ? Look::Focused : live ? Look::Plain : Look::Disabled;
    const String_View mark = option.Value() ? (live ? u"(*)" : u" * ") : (live ? u"( )" : u"   ");
    screen.Text({place.Row, place.Column, 1, 3}, mark, look == Look::Focused ? Look::Plain : look);
    screen.Text({place.Row, place.Column + 4, 1, Columns(caption.Text)}, caption.Text, look, caption.Access);
    if (Has_Focus(option))
        screen.Cursor(place.Row, place.Column + 1);
}

void Form_View::Paint_Button(Screen& screen, const Control& button, const Cells& place) const {
    const Marked_Caption caption(Button_Caption(button));
    const bool live = Is_Live(button);
    const bool is_default = form->Default_Button() == &button;
    const Look look = Has_Focus(button) ? Look::Focused
                      : !live           ? Look::Disabled
                      : is_default      ? Look::Default
                                        : Look::Plain;
    screen.Centred({place.Row, place.Column + 1, 1, place.Columns - 2}, caption.Text, look, caption.Access);
    if (live)
        Paint_Brackets(screen, place, is_default ? u"<" : u"[", is_default ? u">" : u"]");
    if (Has_Focus(button))
        screen.Cursor(place.Row, place.Column + 1);
}

} // namespace terminal
