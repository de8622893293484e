#include "terminal_signals.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include "terminal/terminal_display.h"

namespace terminal {

namespace {

std::array<std::atomic<bool>, NSIG> arrived{};
static_assert(std::atomic<bool>::is_always_lock_free);

// Wakes up whoever waits. It lives as long as the process: a handler may be late.
struct Pipe {
    int Ends[2];
    Pipe() {
        if (::pipe2(Ends, O_CLOEXEC | O_NONBLOCK) != 0)
            throw Cannot_Show("The terminal cannot be watched: no file is left to open; close some");
    }
};
const Pipe& Wake_Up() {
    static const Pipe pipe;
    return pipe;
}
std::atomic<int> writing_end{-1};

void Note(int signal) {
    const int error = errno;
    arrived[static_cast<std::size_t>(signal)] = true;
    const char byte = 0;
    if (::write(writing_end, &byte, 1) < 0) { // full: it wakes up anyway
    }
    errno = error;
}

// What a signal that ends the process has to know; written while none is handled.
struct Before {
    int Input = -1, Output = -1;
    bool Is_Known = false;
    termios Modes{};
    std::array<struct sigaction, NSIG> Actions{};
};
Before before;

// Nothing but what a signal handler may do.
void Restore_And_Go_On(int signal) {
    const int error = errno;
    if (before.Is_Known)
        ::tcsetattr(before.Input, TCSANOW, &before.Modes);
    // Marked pastes off, plain characters, the cursor, the screen that was there before.
    constexpr char sequences[] = "\033[?2004l\033[0m\033[?25h\033[?1049l\r\n";
    if (::write(before.Output, sequences, sizeof sequences - 1) < 0) { // it has gone
    }
    ::sigaction(signal, &before.Actions[static_cast<std::size_t>(signal)], nullptr);
    ::raise(signal);
    Note(SIGCONT); // who goes on after all finds the screen again
    errno = error;
}

void Handle(int signal, void (*handler)(int), struct sigaction& former) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, &former);
}

} // namespace

Terminal_Signals::Terminal_Signals(int input, int output) {
    writing_end = Wake_Up().Ends[1];
    before.Input = input;
    before.Output = output;
    before.Is_Known = ::tcgetattr(input, &before.Modes) == 0;
    for (std::size_t at = 0; at < Noted.size(); ++at) {
        arrived[static_cast<std::size_t>(Noted[at])] = false;
        Handle(Noted[at], Note, former[at]);
    }
    for (const int signal : Final)
        Handle(signal, Restore_And_Go_On, before.Actions[static_cast<std::size_t>(signal)]);
}

Terminal_Signals::~Terminal_Signals() {
    for (const int signal : Final)
        ::sigaction(signal, &before.Actions[static_cast<std::size_t>(signal)], nullptr);
    for (std::size_t at = 0; at < Noted.size(); ++at)
        ::sigaction(Noted[at], &former[at], nullptr);
}

bool Terminal_Signals::Take(int signal) {
    return arrived[static_cast<std::size_t>(signal)].exchange(false);
}

void Terminal_Signals::Look(int input, bool wait) {
    pollfd watched[] = {{input, POLLIN, 0}, {Wake_Up().Ends[0], POLLIN, 0}};
    if (::poll(watched, 2, wait ? -1 : 0) > 0)
        Check_Input(input, watched[0].revents);
    for (char bytes[16]; ::read(Wake_Up().Ends[0], bytes, sizeof bytes) > 0;) {
    }
    if (Take(SIGHUP))
        ending = u"The terminal was closed while the dialog was up";
    if (Take(SIGTERM))
        ending = u"The program was asked to end while the dialog was up";
}

// Input that has nothing to read is the end of it.
void Terminal_Signals::Check_Input(int input, short events) {
    int waiting = 0;
    const bool readable = (events & POLLIN) != 0;
    const bool at_end = readable && (::ioctl(input, FIONREAD, &waiting) != 0 || waiting == 0);
    if (at_end || (events & (POLLHUP | POLLERR | POLLNVAL)) != 0)
        ending = u"The terminal was closed while the dialog was up";
}

} // namespace terminal
