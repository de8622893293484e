#include <cstdlib>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

#include "screen.h"
#include "terminal/terminal_display.h"

// Its macros have everyday names; nothing may be included behind it.
#define NCURSES_NOMACROS
#include <curses.h>
#include <term.h>

namespace terminal {

namespace {

constexpr int Fewest_Rows = 12;
constexpr int Fewest_Columns = 40;

bool Can_Be_Drawn_On() {
    TERMINAL* const former = ::set_curterm(nullptr);
    int result = 0;
    const bool known = ::setupterm(nullptr, STDOUT_FILENO, &result) == OK && ::tigetstr("cup") != nullptr;
    TERMINAL* const checked = ::set_curterm(former);
    if (checked)
        ::del_curterm(checked);
    return known;
}

std::string Value_Of_Term() {
    const char* const value = std::getenv("TERM");
    return value && *value != '\0' ? std::string("TERM is ") + value : "TERM is not set";
}

} // namespace

void Check_Terminal() {
    if (::isatty(STDIN_FILENO) == 0 || ::isatty(STDOUT_FILENO) == 0)
        throw Cannot_Show(
            "There is no terminal: standard input and output must both be one; do not redirect them");
    if (!Can_Be_Drawn_On())
        throw Cannot_Show("The terminal cannot be drawn on: " + Value_Of_Term() +
                          "; set it to the terminal's type, for instance xterm or vt100");
    winsize size{};
    const bool has_size =
        ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row > 0 && size.ws_col > 0;
    if (has_size && (size.ws_row < Fewest_Rows || size.ws_col < Fewest_Columns))
        throw Cannot_Show("The terminal is too small: " + std::to_string(size.ws_col) + " x " +
                          std::to_string(size.ws_row) + " cells; make it at least 40 x 12, better 80 x 24");
}

} // namespace terminal
