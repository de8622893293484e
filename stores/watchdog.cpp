#include "watchdog.h"

#include <condition_variable>
#include <mutex>
#include <sys/socket.h>

namespace stores {

namespace {

constexpr std::chrono::milliseconds Look{100};

// Not every statement knows the connection's owner, but all of an operation run on its thread.
thread_local Watchdog* watching = nullptr;

} // namespace

Watchdog::Watchdog(int socket, std::chrono::seconds patience)
    : socket(socket), patience(patience), thread([this](const std::stop_token& stop) { Run(stop); }) {}

Watchdog::~Watchdog() = default;

Watchdog::Watch::Watch(Watchdog* dog) : former(watching) {
    watching = dog;
    Ask();
}

Watchdog::Watch::~Watch() {
    if (watching)
        watching->deadline = 0;
    watching = former;
}

void Watchdog::Ask() {
    if (watching && watching->patience.count() > 0)
        watching->deadline = (Clock::now() + watching->patience).time_since_epoch().count();
}

void Watchdog::Run(const std::stop_token& stop) {
    std::mutex mutex;
    std::condition_variable_any never;
    std::unique_lock hold(mutex);
    while (!never.wait_for(hold, stop, Look, [&] { return stop.stop_requested(); }) && !bitten) {
        const Clock::rep until = deadline;
        if (until == 0 || Clock::now().time_since_epoch().count() < until)
            continue;
        bitten = true;
        shutdown(socket, SHUT_RDWR);
    }
}

} // namespace stores
