#include "played_device.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "terminal/terminal_display.h"

namespace terminal {

namespace {

int Opened(const char* path, int flags) {
    return path ? ::open(path, flags | O_NOCTTY | O_CLOEXEC) : -1;
}

// Whole characters.
std::size_t Length_Of_Part(const std::string& key) {
    constexpr std::size_t most = 1000;
    std::size_t length = std::min(key.size(), most);
    while (length > 1 && length < key.size() && (static_cast<unsigned char>(key[length]) & 0xC0U) == 0x80)
        --length;
    return length;
}

} // namespace

Played_Device::Played_Device() {
    constexpr winsize Cells_Of_It{24, 80, 0, 0};
    master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    const bool ready = master >= 0 && ::grantpt(master) == 0 && ::unlockpt(master) == 0 &&
                       ::ioctl(master, TIOCSWINSZ, &Cells_Of_It) == 0;
    const char* const path = ready ? ::ptsname(master) : nullptr;
    const int in = Opened(path, O_RDONLY);
    const int out = Opened(path, O_WRONLY);
    if (in < 0 || out < 0)
        throw Cannot_Show("There is no pseudo-terminal to play on; play the script without --terminal");
    In = ::fdopen(in, "r");
    Out = ::fdopen(out, "w");
    Type = "xterm";
    Locale = "C.UTF-8";
}

Played_Device::~Played_Device() {
    std::fclose(In);
    std::fclose(Out);
    ::close(master);
}

void Played_Device::Shown() {
    for (char bytes[4096]; ::read(master, bytes, sizeof bytes) > 0;) {
    }
}

void Played_Device::Input_Is_Awaited() {
    if (waiting.empty())
        throw Cannot_Show("The dialog waits for a key, and nobody presses one");
    // A long paste goes in parts, for a terminal holds some thousand bytes.
    std::string& key = waiting.front();
    const std::size_t part = Length_Of_Part(key);
    if (::write(master, key.data(), part) != static_cast<ssize_t>(part))
        throw Cannot_Show("The pseudo-terminal takes no more keys");
    key.erase(0, part);
    if (key.empty())
        waiting.pop_front();
}

} // namespace terminal
