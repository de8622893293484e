#include "window_host.h"

#include <QApplication>
#include <QThread>

#include <algorithm>
#include <mutex>
#include <utility>

#include "event_turn.h"
#include "message_window.h"

namespace window {

namespace {

// All there are, because Qt tells only a plain function that its application is being destroyed.
std::mutex guarding_all;
std::vector<Window_Host*> all;

void Application_Goes() {
    std::vector<Window_Host*> left;
    {
        const std::lock_guard lock(guarding_all);
        left = all;
    }
    for (Window_Host* side : left)
        delete side;
}

void Remember(Window_Host* side) {
    const std::lock_guard lock(guarding_all);
    if (all.empty())
        qAddPostRoutine(Application_Goes);
    all.push_back(side);
}

void Forget(Window_Host* side) {
    const std::lock_guard lock(guarding_all);
    all.erase(std::find(all.begin(), all.end(), side));
    if (all.empty())
        qRemovePostRoutine(Application_Goes);
}

// Qt may be inside a handler of one of the window's widgets.
class Last_Rest final : public QObject {
public:
    Last_Rest(QObject* parent, std::unique_ptr<Form_Window> window)
        : QObject(parent), window(std::move(window)) {
        deleteLater();
    }

private:
    const std::unique_ptr<Form_Window> window;
};

} // namespace

Window_Host::Window_Host(QCoreApplication& application, std::shared_ptr<Bridge> bridging)
    : bridge(std::move(bridging)) {
    moveToThread(application.thread());
    connect(&application, &QCoreApplication::aboutToQuit, this, &Window_Host::Lose);
    connect(application.thread(), &QThread::finished, this, &Window_Host::Lose, Qt::DirectConnection);
    bridge->Set_Receiver(this);
    Remember(this);
}

Window_Host::~Window_Host() {
    Forget(this);
    Lose();
    bridge->Set_Receiver(nullptr);
}

bool Window_Host::event(QEvent* event) {
    if (event->type() != QEvent::User)
        return QObject::event(event);
    bridge->Serve();
    return true;
}

Form_Window& Window_Host::Add(toolkit::Form& form, Runner& runner) {
    auto window = std::make_unique<Form_Window>(form, runner);
    window->Lie_Over(windows.empty() ? nullptr : windows.back().get());
    return *windows.emplace_back(std::move(window));
}

void Window_Host::Close() {
    std::unique_ptr<Form_Window> window = std::move(windows.back());
    windows.pop_back();
    if (windows.empty())
        pointer.Show(false);
    struct Letting_Go {
        Form_Window& Window;
        ~Letting_Go() { Window.Detach(); }
    } guard{*window};
    new Last_Rest(this, std::move(window));
    guard.Window.Close();
}

void Window_Host::Drop() {
    try {
        if (!windows.empty())
            Close();
    } catch (...) { // what a handler threw is told by who drops the window
    }
}

QMessageBox& Window_Host::Ask(const toolkit::Message& message,
                              const std::function<void(automation::Long)>& answered) {
    boxes.erase(std::remove(boxes.begin(), boxes.end(), nullptr), boxes.end());
    boxes.reserve(boxes.size() + 1);
    Form_Window* const over = windows.empty() ? nullptr : windows.back().get();
    if (over)
        over->Set_Asking(true);
    const auto told = [over, answered](automation::Long answer) {
        if (over)
            over->Set_Asking(false);
        answered(answer);
    };
    return *boxes.emplace_back(&Put(message, over ? &over->Dialog() : nullptr, told));
}

void Window_Host::Drop_Box() {
    if (!boxes.empty())
        delete boxes.back();
    if (!windows.empty())
        windows.back()->Set_Asking(false);
}

void Window_Host::Show_Pointer(bool busy) {
    pointer.Show(busy && !windows.empty());
    for (const auto& window : windows)
        window->Pointer_Changed();
    if (busy) // what comes next may take long
        Take_Turn();
}

void Window_Host::Lose() {
    pointer.Show(false);
    for (const auto& box : boxes)
        if (box) {
            box->disconnect();
            delete box;
        }
    boxes.clear();
    for (const auto& window : windows)
        window->Detach();
    bridge->Lose();
}

void Lose_All() {
    const std::lock_guard lock(guarding_all);
    for (Window_Host* side : all)
        side->Abandon();
}

} // namespace window
