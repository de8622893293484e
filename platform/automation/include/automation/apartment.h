// The thread that an object belongs to. Header-only; may be asked from every thread.
#pragma once

#include "automation/failure.h"

namespace automation {

class Apartment {
public:
    Apartment() noexcept : owner(Automation_This_Thread()) {}
    bool Is_Here() const noexcept { return owner == Automation_This_Thread(); }

    // Raises AUTOMATION_WRONG_THREAD on every thread but the one that made it.
    void Require() const {
        if (!Is_Here())
            throw Failure(AUTOMATION_WRONG_THREAD, u"The object was called on another thread than its own");
    }

private:
    const std::uint64_t owner;
};

} // namespace automation
