// Ends a conversation with a server that has stopped answering: the client library itself would wait for
// ever.
//
// While an operation runs, the server has `patience` for every answer. When that is over the connection is
// shut down, so that the waiting call returns with a failure. Made and used by one thread at a time.
#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace stores {

class Watchdog {
public:
    using Clock = std::chrono::steady_clock;

    // The socket stays the connection's own; the watchdog must go first. No patience: the server has for
    // ever.
    Watchdog(int socket, std::chrono::seconds patience);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    // Whether it has ended the conversation.
    bool Has_Bitten() const { return bitten; }

    // From the beginning of an operation to its end, on the thread that runs it.
    class Watch {
    public:
        explicit Watch(Watchdog* dog); // null: nobody watches
        ~Watch();
        Watch(const Watch&) = delete;
        Watch& operator=(const Watch&) = delete;

    private:
        Watchdog* const former;
    };

    // The operation on this thread, if it is watched, is about to ask the server for one more thing.
    static void Ask();

private:
    void Run(const std::stop_token& stop);

    const int socket;
    const std::chrono::seconds patience;
    std::atomic<Clock::rep> deadline{0}; // 0: no operation runs
    std::atomic<bool> bitten{false};
    std::jthread thread; // last: it uses the others
};

} // namespace stores
