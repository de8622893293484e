// The Display of a thread that is not Qt's.
#pragma once

#include <QCoreApplication>

#include <memory>

#include "gui_thread.h"
#include "toolkit/input_driver.h"

namespace window {

// `application` runs, or is about to run, its event loop on another thread. `gui`: that thread, when it is
// our own; null when it is the host's. `player`: takes a person's place; null for none.
std::unique_ptr<toolkit::Display> Create_Bridged_Display(QCoreApplication& application,
                                                         std::shared_ptr<Gui_Thread> gui,
                                                         toolkit::Player* player = nullptr);

// The calling thread has one.
bool Has_Bridged_Display();

// Does it on the thread of the widgets that the calling thread shows its forms with, with a runner for them.
// False when the calling thread has no bridged Display.
class Runner;
bool Done_On_Qt_Thread(const std::function<void(Runner&)>& work);

} // namespace window
