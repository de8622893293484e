#include "automation/unknown.h"

namespace automation {

namespace {
std::atomic<std::int64_t> live_objects{0};
}

std::int64_t Live_Objects() noexcept {
    return live_objects;
}

void detail::Count_Object(int change) noexcept {
    live_objects += change;
}

} // namespace automation
