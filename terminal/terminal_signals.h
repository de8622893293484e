// The signals that concern a terminal, from construction to destruction.
//
// One object in a process at a time. Signals may arrive on any thread.
#pragma once

#include <array>
#include <signal.h>

namespace terminal {

class Terminal_Signals {
public:
    static constexpr std::array Handled{SIGHUP, SIGINT, SIGTERM, SIGTSTP, SIGCONT, SIGWINCH};

    Terminal_Signals();
    ~Terminal_Signals();
    Terminal_Signals(const Terminal_Signals&) = delete;
    Terminal_Signals& operator=(const Terminal_Signals&) = delete;

    // Waits until there is input, a hang-up or a signal; or only looks.
    void Look(int input, bool wait);

    // Whether it has arrived since the last time it was asked for.
    static bool Take(int signal);
    // Why nothing can be shown any more, in one line; null while it can.
    const char16_t* Ending() const { return ending; }

private:
    void Check_Input(int input, short events);

    int pipe_ends[2];
    std::array<struct sigaction, Handled.size()> former;
    const char16_t* ending = nullptr;
};

} // namespace terminal
