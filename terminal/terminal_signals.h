// The signals that concern a terminal, from construction to destruction.
//
// One object in a process at a time. Signals may arrive on any thread. Those that end the process find the
// terminal as it was before, and then do what they did before.
#pragma once

#include <array>
#include <signal.h>

namespace terminal {

class Terminal_Signals {
public:
    static constexpr std::array Noted{SIGHUP, SIGTERM, SIGTSTP, SIGCONT, SIGWINCH};
    static constexpr std::array Final{SIGINT, SIGQUIT, SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL};

    // The descriptors of the terminal, which still is as it was. Throws Cannot_Show.
    Terminal_Signals(int input, int output);
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

    std::array<struct sigaction, Noted.size()> former;
    const char16_t* ending = nullptr;
};

} // namespace terminal
