#include "bridged_display.h"

#include <QTimer>

#include <algorithm>
#include <optional>
#include <utility>

#include "event_turn.h"
#include "geometry.h"
#include "message_window.h"
#include "synthetic_input.h"
#include "window_host.h"

namespace window {

namespace {

class Bridged_Display;
thread_local Bridged_Display* of_this_thread = nullptr;

class Bridged_Display final : public toolkit::Display, public Runner {
public:
    Bridged_Display(QCoreApplication& application, std::shared_ptr<Gui_Thread> own, toolkit::Player* player)
        : gui(std::move(own)), player(player), bridge(std::make_shared<Bridge>()),
          side(new Window_Host(application, bridge)) {
        of_this_thread = this;
    }
    ~Bridged_Display() override {
        if (of_this_thread == this)
            of_this_thread = nullptr;
        bridge->Close();
        const std::lock_guard lock(Gui_Thread::Coming_And_Going);
        gui.reset();
    }

    toolkit::Size Screen_Size() const override {
        bridge->Call([this] { screen_size = Primary_Screen_Size(); });
        return screen_size;
    }

    void Form_Loaded(toolkit::Form&) override {}
    void Form_Unloaded(toolkit::Form& form) override {
        if (Form_Window* window = Window_Of(form))
            On_Qt([&] { window->Detach(); });
    }
    void Form_Changed(toolkit::Form& form, toolkit::Property property) override {
        if (property != toolkit::Property::Visible)
            Note(form, nullptr, property);
        else if (Form_Window* window = Window_Of(form))
            On_Qt([&] { window->Form_Changed(property); });
    }
    void Control_Changed(toolkit::Control& control, toolkit::Property property) override {
        Note(control.Owner_Form(), &control, property);
    }
    void Focus_Changed(toolkit::Form& form) override { Note(form, nullptr, toolkit::Property::Caret); }
    void Pointer_Changed() override {
        if (!shown.empty())
            On_Qt([this, busy = Is_Busy()] { side->Show_Pointer(busy); });
    }

    void Run_Modal(toolkit::Form& form) override;
    void Process_Pending_Messages() override {
        if (!shown.empty()) // otherwise Qt's thread is about its own business
            On_Qt([] { Take_Turn(); });
    }
    automation::Long Show_Message(const toolkit::Message& message) override;

    // The runner, on Qt's thread.
    void Run(std::function<void()> verb, std::function<void(std::exception_ptr)> done) override {
        bridge->Run([this, verb = std::move(verb), done = std::move(done)] {
            Direct_Runner().Run(verb, [&](const std::exception_ptr& thrown) { Finish(thrown, done); });
        });
    }
    bool May_Read() const override { return bridge->May_Read(); }

    // Tells Qt's thread of the end of a verb, whatever goes wrong on the way. It takes no memory: what a
    // function object holds without any is two words.
    void Finish(const std::exception_ptr& thrown, const std::function<void(std::exception_ptr)>& done) {
        struct End {
            Bridged_Display& Display;
            std::exception_ptr Thrown;
            const std::function<void(std::exception_ptr)>& Done;
        } end{*this, thrown, done};
        bridge->Call([&end] {
            try {
                end.Display.Deliver();
            } catch (...) {
                if (!end.Thrown)
                    end.Thrown = std::current_exception();
            }
            end.Done(end.Thrown);
        });
    }

    // False when the application has ended.
    bool On_Qt(const Work& work) {
        return bridge->Call([&] {
            Deliver();
            work();
        });
    }

private:
    struct Shown_Form {
        const toolkit::Form* Form;
        Form_Window* Window;
    };
    struct Change {
        Form_Window* Window;
        toolkit::Control* Control; // null: the form itself
        toolkit::Property Property;
        friend bool operator==(const Change&, const Change&) = default;
    };

    static bool Is_Busy() { return toolkit::screen::Mouse_Pointer() == toolkit::Pointer_Hourglass; }
    Form_Window* Window_Of(const toolkit::Form& form) const;
    void Note(const toolkit::Form& form, toolkit::Control* control, toolkit::Property property);
    void Deliver();

    void Let_Play(toolkit::Form& form, Form_Window& window);
    bool Show(toolkit::Form& form);
    void Drop_Window();

    std::shared_ptr<Gui_Thread> gui;
    toolkit::Player* const player; // null: a person
    const std::shared_ptr<Bridge> bridge;
    Window_Host* const side; // Qt's thread has it
    mutable toolkit::Size screen_size{};
    std::vector<Shown_Form> shown; // the innermost last
    std::vector<Change> changes;   // which Qt's thread has not been told of
};

Form_Window* Bridged_Display::Window_Of(const toolkit::Form& form) const {
    const auto found =
        std::find_if(shown.begin(), shown.end(), [&](const auto& other) { return other.Form == &form; });
    return found == shown.end() ? nullptr : found->Window;
}

void Bridged_Display::Note(const toolkit::Form& form, toolkit::Control* control, toolkit::Property property) {
    Form_Window* const window = Window_Of(form);
    const Change change{window, control, property};
    if (window && (changes.empty() || changes.back() != change))
        changes.push_back(change);
}

void Bridged_Display::Deliver() {
    for (const Change& change : std::exchange(changes, {}))
        if (change.Control)
            change.Window->Control_Changed(*change.Control, change.Property);
        else
            change.Window->Form_Changed(change.Property);
}

void Bridged_Display::Run_Modal(toolkit::Form& form) {
    const Bridge::Stay stay(*bridge); // until the window has let go of the form
    shown.push_back({&form, nullptr});
    struct Showing {
        std::vector<Shown_Form>& Stack;
        ~Showing() { Stack.pop_back(); }
    } const guard{shown};
    try {
        if (!Show(form))
            throw Application_Ended();
    } catch (...) {
        Drop_Window();
        throw;
    }
}

// False when the application has ended.
bool Bridged_Display::Show(toolkit::Form& form) {
    bool over = false;
    const auto open = [&, busy = Is_Busy()] {
        Deliver();
        Form_Window& window = side->Add(form, *this);
        shown.back().Window = &window; // before it takes input
        window.Open([&over] { over = true; });
        side->Show_Pointer(busy);
        if (player)
            Let_Play(form, window);
    };
    const auto close = [this] {
        shown.back().Window = nullptr;
        side->Close();
    };
    return bridge->Wait(open, over) && On_Qt(close);
}

// A window that could not be opened, or waited for, to the end refers to what is gone.
void Bridged_Display::Drop_Window() {
    Form_Window* const window = std::exchange(shown.back().Window, nullptr);
    std::erase_if(changes, [window](const Change& change) { return change.Window == window; });
    if (window)
        bridge->Call([this] { side->Drop(); });
}

// To the window it all is one verb, with the input that it brings about nested in it.
void Bridged_Display::Let_Play(toolkit::Form& form, Form_Window& window) {
    const auto play = [this, &form, &window] {
        Synthetic_Input driver(window, [this](const Work& work) { return On_Qt(work); });
        player->Play(form, driver);
    };
    const auto start = [this, &form, &window, play] {
        if (window.May_Read())
            window.Perform(play);
        else // the window's own first verb is still under way
            Let_Play(form, window);
    };
    QTimer::singleShot(0, &window.Dialog(), start);
}

automation::Long Bridged_Display::Show_Message(const toolkit::Message& message) {
    automation::Long answer = toolkit::answer::Not_Shown;
    std::optional<automation::Long> played;
    if (player)
        played = player->Answer(message);
    if (played && !message.Has_Button(*played))
        return *played;
    bool answered = false;
    const auto answer_with = [&](automation::Long given) {
        answer = given;
        answered = true;
        bridge->Continue();
    };
    const auto put = [&] {
        Deliver();
        QMessageBox& box = side->Ask(message, answer_with);
        if (played)
            Click_Button_Soon(Button_Of(box, *played));
    };
    try {
        bridge->Wait(put, answered);
    } catch (...) {
        bridge->Call([this] { side->Drop_Box(); });
        throw;
    }
    return answer;
}

} // namespace

std::unique_ptr<toolkit::Display> Create_Bridged_Display(QCoreApplication& application,
                                                         std::shared_ptr<Gui_Thread> gui,
                                                         toolkit::Player* player) {
    return std::make_unique<Bridged_Display>(application, std::move(gui), player);
}

bool Has_Bridged_Display() {
    return of_this_thread != nullptr;
}

bool Done_On_Qt_Thread(const std::function<void(Runner&)>& work) {
    Bridged_Display* const display = of_this_thread;
    return display && display->On_Qt([&] { work(*display); });
}

} // namespace window
