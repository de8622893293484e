#include "pop_up_list.h"

#include <algorithm>

#include "automation/number.h"

namespace terminal {

using automation::Long;

Long Find_Entry(const toolkit::List_Control& list, String_View text, Long from) {
    const Long count = list.Count();
    for (Long step = 0; step < count; ++step) {
        const Long index = (std::max(from, 0) + step) % count;
        if (automation::Equal_Ignoring_Case(String_View(list.Item(index)).substr(0, text.size()), text))
            return index;
    }
    return -1;
}

std::optional<Long> Moved_Index(const Key& key, Long index, Long count, int page) {
    const auto within = [&](Long wanted) { return std::clamp(wanted, 0, std::max(count - 1, 0)); };
    switch (key.Which) {
    case Key::Name::Up:
        return within(index - 1);
    case Key::Name::Down:
        return within(index + 1);
    case Key::Name::Page_Up:
        return within(index - page);
    case Key::Name::Page_Down:
        return within(index + page);
    case Key::Name::Home:
        return 0;
    case Key::Name::End:
        return within(count - 1);
    default:
        return {};
    }
}

namespace {

class Pop_Up_List final : public Layer {
public:
    Pop_Up_List(Screen& screen, const Form_View& form, const toolkit::List_Control& list)
        : screen(screen), form(form), list(list), shown(screen, *this) {
        for (Long index = 0; index < list.Count(); ++index)
            if (list.Item(index).size() > longest.size())
                longest = list.Item(index);
        selected = list.Selected_Index();
        for (Long index = 0; selected < 0 && index < list.Count(); ++index)
            if (list.Item(index) == list.Text())
                selected = index;
        selected = std::max(selected, 0);
    }

    std::optional<Long> Run(const String& wanted) {
        Search(wanted);
        while (true) {
            const Key key = screen.Wait_For_Key();
            if (key.Which == Key::Name::Enter || key.Which == Key::Name::Tab)
                return selected;
            if (key.Which == Key::Name::Escape || key.Which == Key::Name::Open_List ||
                key.Which == Key::Name::Interrupt || key.Which == Key::Name::Gone)
                return {};
            Use(key);
        }
    }

    void Paint(Screen&) override {
        const Cells box = Place();
        rows = box.Rows - 2;
        first = std::clamp(first, std::max(selected - rows + 1, 0), selected);
        screen.Box(box, Look::Border);
        Paint_Entries(screen, list, {box.Row + 1, box.Column + 1, rows, box.Columns - 2}, first, selected,
                      Look::Focused);
        const String position =
            automation::Decimal_Text(selected + 1) + u"/" + automation::Decimal_Text(list.Count());
        const String below = u" " + (typed.empty() ? position : typed) + u" ";
        screen.Text({box.Row + box.Rows - 1, box.Column + 1, 1, std::min(Columns(below), box.Columns - 2)},
                    below, Look::Notice);
        screen.Cursor(box.Row + 1 + selected - first, box.Column + 1);
    }

private:
    // Below the field, or above it where there is more room.
    Cells Place() const {
        constexpr int Most_Rows = 10;
        const Cells field = form.Place_Of(list).value_or(Cells{0, 0, 1, 10});
        const int below = screen.Rows() - field.Row - 1;
        const bool under = below >= std::min(list.Count(), Most_Rows) + 2 || below >= field.Row;
        Cells box;
        box.Rows =
            std::clamp(std::min(list.Count(), Most_Rows) + 2, 3, std::max(under ? below : field.Row, 3));
        box.Columns = std::min(std::max(field.Columns, Columns(longest) + 4), screen.Columns());
        box.Row = std::max(under ? field.Row + 1 : field.Row - box.Rows, 0);
        box.Column = std::clamp(field.Column, 0, screen.Columns() - box.Columns);
        return box;
    }

    void Use(const Key& key) {
        if (const auto index = Moved_Index(key, selected, list.Count(), rows)) {
            selected = *index;
            typed.clear();
        } else if (key.Which == Key::Name::Backspace && !typed.empty()) {
            typed.resize(Cluster_Before(typed, typed.size()));
        } else if (key.Which == Key::Name::Character && !key.Alt) {
            Search(typed + key.Text);
        } else {
            screen.Alert();
        }
    }

    void Search(const String& wanted) {
        const Long found = wanted.empty() ? selected : Find_Entry(list, wanted, 0);
        if (found < 0)
            return screen.Alert();
        selected = found;
        typed = wanted;
    }

    Screen& screen;
    const Form_View& form;
    const toolkit::List_Control& list;
    String_View longest; // in characters, which is near enough to the widest
    String typed;
    Long first = 0;
    Long selected = -1;
    int rows = 1;
    const Screen::Shown_Layer shown;
};

} // namespace

std::optional<Long> Pick_From_List(Screen& screen, const Form_View& form, const toolkit::List_Control& list,
                                   const String& typed) {
    if (list.Count() == 0)
        return {};
    return Pop_Up_List(screen, form, list).Run(typed);
}

} // namespace terminal
