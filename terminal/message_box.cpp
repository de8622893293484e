#include "message_box.h"

#include <algorithm>

#include "toolkit/display_texts.h"

namespace terminal {

namespace {

using automation::Long;
namespace answer = toolkit::answer;
namespace texts = toolkit::display_text;

struct Answer_Button {
    String_View Caption;
    Long Answer;
};
constexpr Answer_Button One[] = {{texts::OK, answer::OK}};
constexpr Answer_Button Three[] = {
    {texts::Save, answer::Save}, {texts::Discard, answer::Discard}, {texts::Cancel, answer::Cancel}};

// What stands for the icon.
String_View Nature_Of(const toolkit::Message& message) {
    constexpr Long Stop_Style = 16;
    if (!message.By_Product)
        return message.Style == Stop_Style ? texts::Error : texts::Information;
    return message.Kind == 1 ? texts::Question : message.Kind == 3 ? texts::Error : texts::Information;
}

class Message_Box final : public Layer {
public:
    Message_Box(Screen& screen, const toolkit::Message& message)
        : screen(screen), message(message), first(message.Asks() ? Three : One),
          count(message.Asks() ? std::size(Three) : std::size(One)), shown(screen, *this) {}

    Long Run() {
        while (true) {
            const Key key = screen.Wait_For_Key();
            if (key.Which == Key::Name::Gone)
                return message.Asks() ? answer::Cancel : answer::Not_Shown;
            if (key.Which == Key::Name::Escape || key.Which == Key::Name::Close)
                return first[count - 1].Answer;
            if (key.Which == Key::Name::Enter || (key.Which == Key::Name::Character && key.Text == u" "))
                return first[chosen].Answer;
            if (key.Which == Key::Name::Character) {
                if (const Answer_Button* button = Begins_With(key.Text))
                    return button->Answer;
            }
            Move(key.Which);
        }
    }

    void Paint(Screen&) override {
        constexpr int Margins = 6;
        constexpr int Other_Rows = 6; // borders, nature, blank lines, buttons
        const std::vector<String> lines =
            Wrapped(message.Text, std::clamp(screen.Columns() - Margins, 1, Widest));
        int columns = std::max(Columns(message.Title) + 2, Three_Buttons);
        for (const String& line : lines)
            columns = std::max(columns, Columns(line));
        const int all = static_cast<int>(lines.size());
        const int rows = std::clamp(all, 1, std::max(screen.Rows() - Other_Rows, 1));
        scrolled = std::clamp(scrolled, 0, all - rows);
        Cells box{0, 0, rows + Other_Rows, std::min(columns + Margins, screen.Columns())};
        box.Row = std::max((screen.Rows() - box.Rows) / 2, 0);
        box.Column = (screen.Columns() - box.Columns) / 2;
        Paint_Ground(box);
        auto line = lines.begin() + scrolled;
        for (int row = 0; row < rows; ++row)
            screen.Text({box.Row + 3 + row, box.Column + 3, 1, box.Columns - Margins}, *line++, Look::Plain);
        if (rows < all)
            Paint_More(box);
        Paint_Buttons(box);
    }

private:
    void Paint_More(const Cells& box) {
        const String more = u" " + String(texts::More_Text) + u" ";
        screen.Text({box.Row + box.Rows - 1, box.Column + 2, 1, std::min(Columns(more), box.Columns - 3)},
                    more, Look::Notice);
    }

    static constexpr int Widest = 64;
    static constexpr int Three_Buttons = 37;

    void Paint_Ground(const Cells& box) {
        for (int row = 0; row < box.Rows; ++row)
            screen.Text({box.Row + row, box.Column, 1, box.Columns}, {}, Look::Plain);
        screen.Box(box, Look::Border);
        const String title = u" " + message.Title + u" ";
        screen.Text({box.Row, box.Column + 2, 1, std::min(Columns(title), box.Columns - 4)}, title,
                    Look::Title);
        screen.Text({box.Row + 1, box.Column + 3, 1, box.Columns - 6}, Nature_Of(message), Look::Notice);
    }

    void Paint_Buttons(const Cells& box) {
        constexpr int Wide = 11;
        constexpr int Gap = 2;
        const int row = box.Row + box.Rows - 2;
        const int all = static_cast<int>(count) * (Wide + Gap) - Gap;
        int column = box.Column + std::max((box.Columns - all) / 2, 1);
        for (std::size_t at = 0; at < count; ++at, column += Wide + Gap) {
            screen.Text({row, column, 1, Wide}, at == chosen ? u"<         >" : u"[         ]", Look::Plain);
            screen.Centred({row, column + 1, 1, Wide - 2}, first[at].Caption,
                           at == chosen ? Look::Focused : Look::Plain,
                           count > 1 ? std::optional(0U) : std::nullopt);
            if (at == chosen)
                screen.Cursor(row, column + 1);
        }
    }

    const Answer_Button* Begins_With(String_View letter) const {
        const auto* const found = std::find_if(first, first + count, [&](const Answer_Button& button) {
            return automation::Equal_Ignoring_Case(button.Caption.substr(0, letter.size()), letter);
        });
        return found == first + count ? nullptr : found;
    }

    void Move(Key::Name key) {
        if (key == Key::Name::Tab || key == Key::Name::Right)
            chosen = (chosen + 1) % count;
        else if (key == Key::Name::Back_Tab || key == Key::Name::Left)
            chosen = (chosen + count - 1) % count;
        else if (key == Key::Name::Down || key == Key::Name::Page_Down)
            ++scrolled;
        else if (key == Key::Name::Up || key == Key::Name::Page_Up)
            --scrolled;
        else
            screen.Alert();
    }

    Screen& screen;
    const toolkit::Message& message;
    const Answer_Button* const first;
    const std::size_t count;
    std::size_t chosen = 0;
    int scrolled = 0;
    const Screen::Shown_Layer shown;
};

} // namespace

Long Ask(Screen& screen, const toolkit::Message& message) {
    return Message_Box(screen, message).Run();
}

} // namespace terminal
