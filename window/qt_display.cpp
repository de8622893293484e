#include "window/qt_display.h"

#include <QApplication>
#include <QScreen>
#include <QThread>

#include <unordered_map>

#include "design_font.h"
#include "form_window.h"
#include "message_window.h"
#include "platform_check.h"
#include "qt_text.h"

namespace window {

namespace {

class Qt_Display final : public toolkit::Display {
public:
    explicit Qt_Display(std::unique_ptr<QApplication> own) : application(std::move(own)) {}
    ~Qt_Display() override { Show_Screen_Pointer(false); }

    toolkit::Size Screen_Size() const override {
        const QSize size = QGuiApplication::primaryScreen()->size();
        return {size.width() * toolkit::Twips_Per_Pixel, size.height() * toolkit::Twips_Per_Pixel};
    }

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
    void Show_Screen_Pointer(bool busy);

    const std::unique_ptr<QApplication> application; // null: the host's
    std::unordered_map<const toolkit::Form*, std::shared_ptr<Form_Window>> windows;
    std::vector<Form_Window*> running; // the innermost last
    bool shown_busy = false;
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
    auto& slot = windows[&form];
    if (!slot)
        slot = std::make_shared<Form_Window>(form);
    const std::shared_ptr<Form_Window> window = slot;
    struct Running {
        std::vector<Form_Window*>& Stack;
        ~Running() { Stack.pop_back(); }
    } guard{running};
    running.push_back(window.get());
    window->Run();
}

// A second action of a person would run handlers inside the one that waits here.
void Qt_Display::Process_Pending_Messages() {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

automation::Long Qt_Display::Show_Message(const toolkit::Message& message) {
    QWidget* const over = running.empty() ? QApplication::activeWindow() : &running.back()->Dialog();
    return Ask(message, over);
}

void Qt_Display::Pointer_Changed() {
    Show_Screen_Pointer(toolkit::screen::Mouse_Pointer() == toolkit::Pointer_Hourglass);
    for (const auto& [form, window] : windows)
        window->Pointer_Changed();
}

void Qt_Display::Show_Screen_Pointer(bool busy) {
    if (std::exchange(shown_busy, busy) == busy)
        return;
    if (busy)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QGuiApplication::restoreOverrideCursor();
}

std::unique_ptr<QApplication> Create_Application(int& argc, char** argv) {
    const Platform_Check check;
    if (!check.Obstacle().isEmpty())
        throw Cannot_Show(check.Obstacle().toStdString());
    auto application = std::make_unique<QApplication>(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setFont(Stand_In({}));
    return application;
}

} // namespace

std::unique_ptr<toolkit::Display> Create_Qt_Display(int& argc, char** argv) {
    QCoreApplication* const present = QCoreApplication::instance();
    if (!present)
        return std::make_unique<Qt_Display>(Create_Application(argc, argv));
    if (!qobject_cast<QApplication*>(present))
        throw Cannot_Show(
            "There is no display: the host's Qt application has no widgets; make it a QApplication");
    if (present->thread() != QThread::currentThread())
        throw Cannot_Show(
            "There is no display on this thread; open the window on the Qt application's thread");
    return std::make_unique<Qt_Display>(nullptr);
}

} // namespace window
