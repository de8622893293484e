#include "layout.h"

#include <algorithm>
#include <cmath>

namespace terminal {

using toolkit::Control;
using toolkit::Control_Kind;
using toolkit::Twips;

namespace {

constexpr Twips Level = 120;      // half a line of text: what differs less stands in one row
constexpr Twips Entry_Rows = 240; // a row of a list box
constexpr double Roomiest = 60;   // twips in a column
constexpr double Narrowest = 90;  // an average character of the design font

struct Item {
    Placed Cell;
    toolkit::Rectangle Where; // in the client area
    const toolkit::List_Box* List = nullptr;
    bool Is_Frame = false;
};

std::vector<Item> Visible_Items(const toolkit::Form& form) {
    std::vector<Item> items;
    for (Control* control : form.Controls()) {
        toolkit::Rectangle where = control->Place();
        bool visible = control->Visible();
        for (const Control* outer = control->Container(); outer; outer = outer->Container()) {
            where.Left += outer->Left();
            where.Top += outer->Top();
            visible = visible && outer->Visible();
        }
        if (visible)
            items.push_back({{control, {.Rows = 1}},
                             where,
                             dynamic_cast<const toolkit::List_Box*>(control),
                             control->Kind() == Control_Kind::Frame});
    }
    return items;
}

// Rows

// Something that needs a row at a height of the form: the middle of a control, the first line of a list, an
// edge of a frame.
struct Anchor {
    Twips Height;
    Item* Of;
    bool Is_Lower_Edge;
};

std::vector<Anchor> Anchors(std::vector<Item>& items) {
    std::vector<Anchor> anchors;
    for (Item& item : items) {
        const auto& where = item.Where;
        if (item.Is_Frame) {
            anchors.push_back({where.Top, &item, false});
            anchors.push_back({where.Top + where.Height, &item, true});
        } else {
            anchors.push_back({where.Top + (item.List ? Entry_Rows : where.Height) / 2, &item, false});
        }
    }
    std::stable_sort(anchors.begin(), anchors.end(),
                     [](const Anchor& one, const Anchor& other) { return one.Height < other.Height; });
    return anchors;
}

// The first row that is free of the lists that end above.
int Row_Below_Lists(const std::vector<Item>& items, Twips height, int row) {
    for (const Item& item : items)
        if (item.List && item.Where.Top + item.Where.Height <= height)
            row = std::max(row, item.Cell.Place.Row + item.Cell.Place.Rows);
    return row;
}

void Give_Rows(std::vector<Item>& items) {
    int row = -1;
    const Anchor* first = nullptr; // of the row
    const std::vector<Anchor> anchors = Anchors(items);
    for (const Anchor& anchor : anchors) {
        const bool shares = first && first->Of->Is_Frame == anchor.Of->Is_Frame &&
                            first->Is_Lower_Edge == anchor.Is_Lower_Edge &&
                            anchor.Height - first->Height <= Level;
        if (!shares) {
            row = Row_Below_Lists(items, anchor.Height, row + 1);
            first = &anchor;
        }
        Cells& place = anchor.Of->Cell.Place;
        if (anchor.Is_Lower_Edge)
            place.Rows = row - place.Row + 1;
        else
            place.Row = row;
        if (anchor.Of->List)
            place.Rows = std::clamp(anchor.Of->Where.Height / Entry_Rows, 2, 8);
    }
}

// Columns

int Needed_Columns(const Control& control) {
    switch (control.Kind()) {
    case Control_Kind::Label:
        return Columns(toolkit::Drawn_Caption(control.Caption()));
    case Control_Kind::Option_Button:
    case Control_Kind::Command_Button:
        return Columns(toolkit::Drawn_Caption(Button_Caption(control))) + 4;
    case Control_Kind::Frame:
        return Columns(toolkit::Drawn_Caption(control.Caption())) + 4;
    default:
        return 6;
    }
}

double Twips_A_Column(const toolkit::Form& form, int columns) {
    const double width = form.Place().Width - form.Border().Width;
    return std::clamp(width / std::max(columns, 1), Roomiest, Narrowest);
}

bool Is_Bare_Label(const Control& control) {
    const auto* label = dynamic_cast<const toolkit::Label*>(&control);
    return label && label->Look().Line == toolkit::Label::Border::None;
}

void Give_Columns(std::vector<Item>& items, double twips_a_column) {
    for (Item& item : items) {
        auto column = [&](Twips twips) { return static_cast<int>(std::lround(twips / twips_a_column)); };
        Cells& place = item.Cell.Place;
        const int needed = Needed_Columns(*item.Cell.Control);
        place.Column = std::max(column(item.Where.Left), 0);
        place.Columns = Is_Bare_Label(*item.Cell.Control)
                            ? needed
                            : std::max(column(item.Where.Left + item.Where.Width) - place.Column, needed);
    }
}

// Moves to the right what would be covered.
void Make_Room(std::vector<Item>& items) {
    std::vector<Item*> order;
    for (Item& item : items)
        if (!item.Is_Frame)
            order.push_back(&item);
    std::stable_sort(order.begin(), order.end(), [](const Item* one, const Item* other) {
        const Cells &left = one->Cell.Place, &right = other->Cell.Place;
        return left.Row != right.Row ? left.Row < right.Row : left.Column < right.Column;
    });
    for (std::size_t at = 1; at < order.size(); ++at) {
        const Cells& before = order[at - 1]->Cell.Place;
        Cells& place = order[at]->Cell.Place;
        const int gap = Is_Bare_Label(*order[at - 1]->Cell.Control) ? 1 : 0;
        if (place.Row == before.Row)
            place.Column = std::max(place.Column, before.Column + before.Columns + gap);
    }
}

// From the innermost frame out, and the form last.
void Enclose(std::vector<Item>& items, Layout& layout) {
    for (auto item = items.rbegin(); item != items.rend(); ++item)
        for (const Item& inner : items)
            if (inner.Cell.Control->Container() == item->Cell.Control) {
                Cells& frame = item->Cell.Place;
                const Cells& place = inner.Cell.Place;
                frame.Columns = std::max(frame.Columns, place.Column + place.Columns + 1 - frame.Column);
            }
    for (const Item& item : items) {
        const Cells& place = item.Cell.Place;
        layout.Rows = std::max(layout.Rows, place.Row + place.Rows);
        layout.Columns = std::max(layout.Columns, place.Column + place.Columns);
    }
}

} // namespace

const Placed* Layout::Find(const Control* control) const {
    const auto found = std::find_if(Controls.begin(), Controls.end(),
                                    [&](const Placed& placed) { return placed.Control == control; });
    return found == Controls.end() ? nullptr : &*found;
}

Layout Lay_Out(const toolkit::Form& form, int columns) {
    std::vector<Item> items = Visible_Items(form);
    const double scale = Twips_A_Column(form, columns);
    Give_Rows(items);
    Give_Columns(items, scale);
    Make_Room(items);
    Layout layout;
    layout.Columns = static_cast<int>((form.Place().Width - form.Border().Width) / scale);
    Enclose(items, layout);
    // A frame is the ground that its controls stand on, whatever their order.
    std::stable_partition(items.begin(), items.end(), [](const Item& item) { return item.Is_Frame; });
    for (const Item& item : items)
        layout.Controls.push_back(item.Cell);
    return layout;
}

String Button_Caption(const Control& button) {
    if (!button.Caption().empty())
        return button.Caption();
    constexpr String_View symbols[][3] = {{u"First", u"|\u25C4", u"|<"},
                                          {u"Previous", u"\u25C4", u"<"},
                                          {u"Next", u"\u25BA", u">"},
                                          {u"Last", u"\u25BA|", u">|"}};
    const String& name = button.Name();
    for (const auto& [ending, symbol, stand_in] : symbols)
        if (name.ends_with(ending))
            return Symbol(symbol, stand_in);
    const std::size_t behind_prefix = name.find_first_not_of(u"abcdefghijklmnopqrstuvwxyz");
    return behind_prefix == String::npos ? name : name.substr(behind_prefix);
}

} // namespace terminal
