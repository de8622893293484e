// The Display of a run.
#pragma once

#include "toolkit/form.h"

namespace host {

// Makes a Display the thread's own; its forms go before it does.
class Installed_Display {
public:
    explicit Installed_Display(toolkit::Display& display) { toolkit::Set_Display(&display); }
    ~Installed_Display() {
        toolkit::Discard_All_Forms();
        toolkit::Set_Display(nullptr);
    }
    Installed_Display(const Installed_Display&) = delete;
    Installed_Display& operator=(const Installed_Display&) = delete;
};

} // namespace host
