// The thread that an object belongs to. Header-only; may be asked from every thread.
#pragma once

#include <atomic>

#include "automation/failure.h"

namespace automation {

// Numbers of this module's own: the system gives the identifier of a thread that has ended to another one.
namespace detail {
__attribute__((visibility("hidden"))) inline std::atomic<std::uint64_t> last_thread{0};
__attribute__((visibility("hidden"))) inline thread_local const std::uint64_t this_thread = ++last_thread;
} // namespace detail

inline std::uint64_t This_Thread() noexcept {
    return detail::this_thread;
}

class Apartment {
public:
    Apartment() noexcept : owner(This_Thread()) {}
    bool Is_Here() const noexcept { return owner == This_Thread(); }

    // Raises AUTOMATION_WRONG_THREAD on every thread but the one that made it.
    void Require() const {
        if (!Is_Here())
            throw Failure(AUTOMATION_WRONG_THREAD, u"The object was called on another thread than its own");
    }

private:
    const std::uint64_t owner;
};

} // namespace automation
