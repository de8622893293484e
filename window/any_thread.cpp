#include "window/any_thread.h"

#include <QThread>

#include "application.h"
#include "bridged_display.h"
#include "window/qt_display.h"

namespace window {

namespace {

std::weak_ptr<Gui_Thread> own_thread; // under Gui_Thread::Coming_And_Going

// Null when there is none. One that somebody else has ended is waited for: it is no use any more.
std::shared_ptr<Gui_Thread> Own_Thread() {
    auto gui = own_thread.lock();
    if (!gui || gui->Is_Running())
        return gui;
    gui->Await_End();
    return nullptr;
}

std::unique_ptr<toolkit::Display> Open(toolkit::Player* player) {
    const std::lock_guard lock(Gui_Thread::Coming_And_Going);
    std::shared_ptr<Gui_Thread> gui = Own_Thread();
    Gui_Thread::Require_Display();
    if (!QCoreApplication::instance())
        own_thread = gui = std::make_shared<Gui_Thread>();
    QCoreApplication& application = *QCoreApplication::instance();
    Require_Widgets(application);
    if (QCoreApplication::closingDown())
        throw Cannot_Show(
            "There is no display: the host's Qt application is ending; open the dialog earlier");
    if (application.thread() != QThread::currentThread())
        return Create_Bridged_Display(application, std::move(gui), player);
    if (player)
        throw Cannot_Show("A script cannot play on the Qt application's own thread; play it on another");
    return Create_Qt_Display({});
}

} // namespace

std::unique_ptr<toolkit::Display> Open_Display() {
    return Open(nullptr);
}

std::unique_ptr<toolkit::Display> Open_Played_Display(toolkit::Player& player) {
    return Open(&player);
}

} // namespace window
