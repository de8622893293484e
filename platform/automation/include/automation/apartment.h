// The thread that an object belongs to. Header-only; may be asked from every thread.
#pragma once

#include <thread>

#include "automation/failure.h"

namespace automation {

class Apartment {
public:
    Apartment() noexcept : owner(std::this_thread::get_id()) {}
    bool Is_Here() const noexcept { return owner == std::this_thread::get_id(); }

    // Raises AUTOMATION_WRONG_THREAD on every thread but the one that made it.
    void Require() const {
        if (!Is_Here())
            throw Failure(AUTOMATION_WRONG_THREAD, u"The object was called on another thread than its own");
    }

private:
    const std::thread::id owner;
};

} // namespace automation
