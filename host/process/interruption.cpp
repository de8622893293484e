#include "process/interruption.h"

#include <array>
#include <csignal>
#include <unistd.h>

#include "automation/interruption.h"

namespace host {

namespace {

constexpr std::array Signals{SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t arrived = 0;

void Note(int signal) {
    arrived = signal;
    automation::Interrupt();
}

// No byte of memory is asked for, and no lock taken.
void End(int signal) {
    automation::Interrupt();
    if (automation::Critical_Section::Puts_Off(signal))
        return;
    constexpr char said[] =
        "style-editor: ended by a signal; what was saved before stays saved, nothing else was changed\n";
    (void)!write(STDERR_FILENO, said, sizeof said - 1);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void Set_Handlers(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    for (const int signal : Signals)
        sigaddset(&action.sa_mask, signal);
    for (const int signal : Signals) {
        struct sigaction former {};
        // Who starts a program in the background may want it to ignore them.
        if (sigaction(signal, nullptr, &former) == 0 && former.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

} // namespace

Interruption::Interruption(Way way) {
    arrived = 0;
    automation::Forget_Interruption();
    Set_Handlers(way == Way::Unwinds ? Note : End);
}

Interruption::~Interruption() {
    Set_Handlers(SIG_DFL);
    automation::Forget_Interruption();
}

bool Interruption::Has_Come() {
    return arrived != 0;
}

void Interruption::End_By_Signal() {
    if (const int signal = arrived) {
        std::signal(signal, SIG_DFL);
        std::raise(signal);
    }
}

} // namespace host
