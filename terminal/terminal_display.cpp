#include "terminal/terminal_display.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "automation/apartment.h"
#include "form_keys.h"
#include "message_box.h"
#include "typed_input.h"

namespace terminal {

namespace {

[[noreturn]] void Fail(String why) {
    throw automation::Failure(automation::Status_Unspecified, std::move(why));
}

class Terminal_Display final : public toolkit::Display {
public:
    // `player`: takes a person's place; null for none.
    explicit Terminal_Display(toolkit::Player* player) : player(player) {
        if (player)
            played.emplace();
        else
            Check_Terminal();
    }

    toolkit::Size Screen_Size() const override;

    // A view looks at its form whenever it is shown, and input shows it after each key.
    void Form_Loaded(toolkit::Form&) override {}
    void Form_Unloaded(toolkit::Form& form) override;
    void Form_Changed(toolkit::Form&, toolkit::Property) override {}
    void Control_Changed(toolkit::Control&, toolkit::Property) override {}
    void Focus_Changed(toolkit::Form&) override {}
    void Pointer_Changed() override { Process_Pending_Messages(); }

    void Run_Modal(toolkit::Form& form) override;
    void Process_Pending_Messages() override {
        if (const auto screen = shown_on.lock())
            screen->Show();
    }
    automation::Long Show_Message(const toolkit::Message& message) override;

private:
    std::shared_ptr<Screen> Open();
    void Take_Input(Screen& screen, Form_View& view);

    Device& Used() { return played ? static_cast<Device&>(*played) : own; }

    toolkit::Player* const player;
    Device own;
    std::optional<Played_Device> played;
    const automation::Apartment apartment;
    std::weak_ptr<Screen> shown_on; // while the outermost dialog or box is up
    std::vector<Form_View*> running;
};

toolkit::Size Terminal_Display::Screen_Size() const {
    constexpr toolkit::Twips Cell_Width = 120;
    constexpr toolkit::Twips Cell_Height = 240;
    winsize size{};
    const int out = ::fileno(played ? played->Out : own.Out);
    if (::ioctl(out, TIOCGWINSZ, &size) != 0 || size.ws_row == 0 || size.ws_col == 0)
        size = {24, 80, 0, 0};
    return {size.ws_col * Cell_Width, size.ws_row * Cell_Height};
}

void Terminal_Display::Form_Unloaded(toolkit::Form& form) {
    for (Form_View* view : running)
        if (view->Shown() == &form)
            view->Detach();
}

std::shared_ptr<Screen> Terminal_Display::Open() {
    if (!apartment.Is_Here())
        throw Cannot_Show("The terminal belongs to another thread; open the dialog on that thread");
    auto screen = shown_on.lock();
    if (!screen) {
        if (!played)
            Check_Terminal();
        screen = std::make_shared<Screen>(Used());
        shown_on = screen;
    }
    return screen;
}

void Terminal_Display::Run_Modal(toolkit::Form& form) try {
    const auto screen = Open();
    Form_View view(form);
    const Screen::Shown_Layer shown(*screen, view);
    struct Running {
        std::vector<Form_View*>& Views;
        ~Running() { Views.pop_back(); }
    } guard{running};
    running.push_back(&view);
    if (!player)
        return Take_Input(*screen, view);
    Typed_Input driver(*screen, *played, view);
    player->Play(form, driver);
} catch (const Cannot_Show& error) {
    Fail(automation::From_UTF8(error.what()).value_or(String()));
}

void Terminal_Display::Take_Input(Screen& screen, Form_View& view) {
    Form_Keys keys(screen, view);
    while (view.Shown() && view.Shown()->Is_Visible()) {
        const Key key = screen.Wait_For_Key();
        if (key.Which == Key::Name::Gone)
            Fail(screen.Ending());
        keys.Press(key);
    }
}

automation::Long Terminal_Display::Show_Message(const toolkit::Message& message) try {
    const auto answer = player ? std::optional(player->Answer(message)) : std::nullopt;
    if (answer && !message.Has_Button(*answer))
        return *answer;
    const auto screen = Open();
    if (answer)
        played->Add_First(Key_Of_Answer(*answer));
    return Ask(*screen, message);
} catch (const Cannot_Show&) {
    return toolkit::answer::Not_Shown;
}

} // namespace

std::unique_ptr<toolkit::Display> Create_Terminal_Display() {
    return std::make_unique<Terminal_Display>(nullptr);
}

std::unique_ptr<toolkit::Display> Create_Played_Terminal_Display(toolkit::Player& player) {
    return std::make_unique<Terminal_Display>(&player);
}

} // namespace terminal
