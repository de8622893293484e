#include "window/qt_display.h"

#include <QEventLoop>
#include <QThread>

#include <unordered_map>

#include "application.h"
#include "event_turn.h"
#include "form_window.h"
#include "geometry.h"
#include "message_window.h"
#include "screen_pointer.h"

namespace window {

namespace {

class Qt_Display final : public toolkit::Display {
public:
    explicit Qt_Display(std::unique_ptr<QApplication> own) : application(std::move(own)) {}

    toolkit::Size Screen_Size() const override { return Primary_Screen_Size(); }

    void Form_Loaded(toolkit::Form&) override {}
    void Form_Unloaded(toolkit::Form& form) override;
    void Form_Changed(toolkit::Form& form, toolkit::Property property) override {
        if (Form_Window* window = Window_Of(form))
            window->Form_Changed(property);
    }
    void Control_Changed(toolkit::Control& control, toolkit::Property property) override {
        if (Form_Window* window = Window_Of(control.Owner_Form()))
            window->Control_Changed(control, property);
    }
    void Focus_Changed(toolkit::Form& form) override {
        if (Form_Window* window = Window_Of(form))
            window->Focus_Changed();
    }
    void Pointer_Changed() override;

    void Run_Modal(toolkit::Form& form) override;
    void Process_Pending_Messages() override;
    automation::Long Show_Message(const toolkit::Message& message) override;

private:
    Form_Window* Window_Of(const toolkit::Form& form) const {
        const auto found = windows.find(&form);
        return found == windows.end() ? nullptr : found->second.get();
    }

    static void Run(Form_Window& window);

    const std::unique_ptr<QApplication> application; // null: the host's
    std::unordered_map<const toolkit::Form*, std::shared_ptr<Form_Window>> windows;
    std::vector<Form_Window*> running; // the innermost last
    Screen_Pointer pointer;
    Direct_Runner runner;
};

void Qt_Display::Form_Unloaded(toolkit::Form& form) {
    const auto found = windows.find(&form);
    if (found == windows.end())
        return;
    const std::shared_ptr<Form_Window> window = found->second; // Run_Modal may have it, too
    windows.erase(found);
    window->Detach();
}

void Qt_Display::Run_Modal(toolkit::Form& form) {
    auto found = windows.find(&form);
    if (found == windows.end())
        found = windows.emplace(&form, std::make_shared<Form_Window>(form, runner)).first;
    const std::shared_ptr<Form_Window> window = found->second;
    running.push_back(window.get());
    struct Running {
        std::vector<Form_Window*>& Stack;
        ~Running() {
            Stack.back()->Put_Away(); // it refers to what goes now
            Stack.pop_back();
        }
    } const guard{running};
    Run(*window);
}

void Qt_Display::Run(Form_Window& window) {
    QEventLoop loop;
    bool over = false;
    window.Open([&] {
        over = true;
        loop.quit();
    });
    if (!over)
        loop.exec();
    window.Close();
}

// A second action of a person would run handlers inside the one that waits here.
void Qt_Display::Process_Pending_Messages() {
    Take_Turn();
}

automation::Long Qt_Display::Show_Message(const toolkit::Message& message) {
    if (running.empty())
        return Ask(message, QApplication::activeWindow());
    struct Asking {
        Form_Window& Window;
        ~Asking() { Window.Set_Asking(false); }
    } const guard{*running.back()};
    guard.Window.Set_Asking(true);
    return Ask(message, &guard.Window.Dialog());
}

void Qt_Display::Pointer_Changed() {
    pointer.Show(toolkit::screen::Mouse_Pointer() == toolkit::Pointer_Hourglass);
    for (const auto& [form, window] : windows)
        window->Pointer_Changed();
}

} // namespace

std::unique_ptr<toolkit::Display> Create_Qt_Display(const std::vector<std::string>& arguments) {
    QCoreApplication* const present = QCoreApplication::instance();
    if (!present)
        return std::make_unique<Qt_Display>(Create_Application(arguments));
    Require_Widgets(*present);
    if (present->thread() != QThread::currentThread())
        throw Cannot_Show(
            "There is no display on this thread; open the window on the Qt application's thread");
    return std::make_unique<Qt_Display>(nullptr);
}

} // namespace window
