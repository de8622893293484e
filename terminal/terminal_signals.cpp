#include "terminal_signals.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "terminal/terminal_display.h"

namespace terminal {

namespace {

volatile sig_atomic_t arrived[NSIG];
std::atomic<int> wake_up{-1}; // wakes up whoever waits

void Note(int signal) {
    const int error = errno;
    arrived[signal] = 1;
    const char byte = 0;
    if (::write(wake_up, &byte, 1) < 0) { // full: it wakes up anyway
    }
    errno = error;
}

} // namespace

Terminal_Signals::Terminal_Signals() {
    if (::pipe2(pipe_ends, O_CLOEXEC | O_NONBLOCK) != 0)
        throw Cannot_Show("The terminal cannot be watched: no file is left to open; close some");
    wake_up = pipe_ends[1];
    struct sigaction action {};
    action.sa_handler = Note;
    action.sa_flags = SA_RESTART;
    for (std::size_t at = 0; at < Handled.size(); ++at) {
        arrived[Handled[at]] = 0;
        ::sigaction(Handled[at], &action, &former[at]);
    }
}

Terminal_Signals::~Terminal_Signals() {
    for (std::size_t at = 0; at < Handled.size(); ++at)
        ::sigaction(Handled[at], &former[at], nullptr);
    wake_up = -1;
    ::close(pipe_ends[0]);
    ::close(pipe_ends[1]);
}

bool Terminal_Signals::Take(int signal) {
    const bool has_arrived = arrived[signal] != 0;
    arrived[signal] = 0;
    return has_arrived;
}

void Terminal_Signals::Look(int input, bool wait) {
    pollfd watched[] = {{input, POLLIN, 0}, {pipe_ends[0], POLLIN, 0}};
    if (::poll(watched, 2, wait ? -1 : 0) > 0)
        Check_Input(input, watched[0].revents);
    for (char bytes[16]; ::read(pipe_ends[0], bytes, sizeof bytes) > 0;) {
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
