#include "screen.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

#include "terminal/terminal_display.h"

#define NCURSES_NOMACROS
#include <curses.h>

namespace terminal {

namespace {

std::shared_ptr<void> The_Only_Place() {
    static std::atomic<bool> taken = false;
    if (taken.exchange(true))
        throw Cannot_Show("The terminal shows another dialog of this process; close that first");
    return {&taken, [](std::atomic<bool>* place) { *place = false; }};
}

// Of that name, empty for the environment's; what that leaves open is UTF-8.
locale_t Chosen_Locale(const char* wanted) {
    bool is_set = *wanted != '\0';
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* const value = std::getenv(name);
        is_set = is_set || (value && *value != '\0');
    }
    locale_t chosen = is_set ? ::newlocale(LC_CTYPE_MASK, wanted, nullptr) : nullptr;
    if (!chosen)
        chosen = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return chosen ? chosen : ::newlocale(LC_CTYPE_MASK, "C", nullptr);
}

bool Colours_Wanted() {
    const char* const value = std::getenv("NO_COLOR");
    return !value || *value == '\0';
}

// Most terminals of today tell a paste from typing when asked to; the others do not mind.
void Ask_For_Marked_Pastes(std::FILE* out, bool wanted) {
    const char* const request = wanted ? "\033[?2004h" : "\033[?2004l";
    const char* const move = ::tigetstr("cup");
    if (move && std::strncmp(move, "\033[", 2) == 0 &&
        ::write(::fileno(out), request, std::strlen(request)) < 0) {
    }
}

// Without colours every look but the plain one is an attribute that even old terminals have.
struct Paint {
    attr_t Bare;
    attr_t Coloured;
    short Foreground;
    short Background;
};
// The terminal's own colour. One of ours always stands on one of ours: the terminal may be white or black.
constexpr short Own = -1;
constexpr Paint Paints[] = {
    /* Plain    */ {A_NORMAL, A_NORMAL, Own, Own},
    /* Border   */ {A_NORMAL, A_NORMAL, Own, Own},
    /* Title    */ {A_BOLD, A_BOLD, Own, Own},
    /* Field    */ {A_UNDERLINE, A_NORMAL, COLOR_WHITE, COLOR_BLUE},
    /* Focused  */ {A_REVERSE, A_NORMAL, COLOR_BLACK, COLOR_CYAN},
    /* Disabled */ {A_DIM, A_DIM, Own, Own},
    /* Default  */ {A_BOLD, A_BOLD, Own, Own},
    /* Hint     */ {A_NORMAL, A_NORMAL, COLOR_BLACK, COLOR_CYAN},
    /* Notice   */ {A_BOLD, A_NORMAL, COLOR_BLACK, COLOR_YELLOW},
};

void Select_Look(Look look, bool colours, attr_t more = A_NORMAL) {
    const Paint& paint = Paints[static_cast<std::size_t>(look)];
    const auto pair = static_cast<short>(colours ? static_cast<int>(look) + 1 : 0);
    ::wattr_set(stdscr, (colours ? paint.Coloured : paint.Bare) | more, pair, nullptr);
}

} // namespace

Screen::Screen(Device& device)
    : device(device), claim(The_Only_Place()), signals(::fileno(device.In), ::fileno(device.Out)),
      locale(Chosen_Locale(device.Locale)), former_locale(::uselocale(locale)) {
    terminal = ::newterm(device.Type, device.Out, device.In);
    if (terminal) {
        Take_Terminal();
        return;
    }
    ::uselocale(former_locale);
    ::freelocale(locale);
    throw Cannot_Show("The terminal of TERM cannot be drawn on; set TERM to what the terminal is");
}

void Screen::Take_Terminal() {
    former_terminal = ::set_term(terminal);
    ::raw(); // Ctrl-C and the like are keys
    ::noecho();
    ::nonl();
    ::nodelay(stdscr, true);
    ::intrflush(stdscr, false);
    ::keypad(stdscr, true);
    ::typeahead(-1); // what is shown is never behind
    if (!std::getenv("ESCDELAY"))
        ::set_escdelay(50);
    Key_Reader::Learn_Sequences();
    Ask_For_Marked_Pastes(device.Out, true);
    Set_Colours();
    Fit();
}

Screen::~Screen() {
    Ask_For_Marked_Pastes(device.Out, false);
    ::endwin();
    ::set_term(former_terminal);
    ::delscreen(terminal);
    ::uselocale(former_locale);
    ::freelocale(locale);
}

void Screen::Set_Colours() {
    colours = Colours_Wanted() && ::has_colors();
    if (!colours)
        return;
    ::start_color();
    ::use_default_colors();
    short pair = 0;
    for (const Paint& paint : Paints)
        ::init_pair(++pair, paint.Foreground, paint.Background);
}

int Screen::Rows() const {
    return getmaxy(stdscr);
}

int Screen::Columns() const {
    return getmaxx(stdscr);
}

void Screen::Fit() {
    winsize size{};
    if (::ioctl(::fileno(device.Out), TIOCGWINSZ, &size) == 0 && size.ws_row > 0 && size.ws_col > 0)
        ::resizeterm(size.ws_row, size.ws_col);
    ::clearok(curscr, true); // the terminal has moved what it showed
}

// The shell has used the terminal meanwhile.
void Screen::Resume() {
    ::reset_prog_mode();
    ::keypad(stdscr, true);
    Ask_For_Marked_Pastes(device.Out, true);
    ::clearok(curscr, true);
}

// Showing and keys

void Screen::Show() {
    cursor.reset();
    ::werase(stdscr);
    for (Layer* layer : layers) {
        Set_View({0, 0, Rows(), Columns()});
        layer->Paint(*this);
    }
    ::curs_set(cursor ? 1 : 0);
    if (cursor)
        ::wmove(stdscr, cursor->first, cursor->second);
    ::wrefresh(stdscr);
    device.Shown();
}

void Screen::Serve_Signals(bool wait) {
    if (wait)
        device.Input_Is_Awaited();
    signals.Look(::fileno(device.In), wait);
    if (Terminal_Signals::Take(SIGCONT))
        Resume();
    if (Terminal_Signals::Take(SIGWINCH))
        Fit();
}

Key Screen::Wait_For_Key() {
    for (bool wait = false;; wait = true) {
        Serve_Signals(wait);
        if (signals.Ending())
            return Key{Key::Name::Gone};
        Show();
        const auto key = keys.Next();
        if (key && key->Which != Key::Name::Repaint)
            return *key;
        if (key)
            ::clearok(curscr, true);
    }
}

void Screen::Alert() {
    ::beep();
}

// Drawing

void Screen::Set_View(const Cells& new_view, int rows, int columns) {
    view = new_view;
    scrolled_rows = rows;
    scrolled_columns = columns;
}

bool Screen::Is_In_View(int row, int column, int columns) const {
    return row >= 0 && row < view.Rows && column >= 0 && column + columns <= view.Columns;
}

void Screen::Text(const Cells& place, String_View text, Look look, std::optional<std::size_t> underlined) {
    const int row = place.Row - scrolled_rows;
    const int first = place.Column - scrolled_columns;
    const bool cut = terminal::Columns(text) > place.Columns;
    int used = 0;
    auto put = [&](const std::wstring& shown, int columns, attr_t more) {
        if (Is_In_View(row, first + used, columns)) {
            Select_Look(look, colours, more);
            ::mvwaddnwstr(stdscr, view.Row + row, view.Column + first + used, shown.c_str(),
                          static_cast<int>(shown.size()));
        }
        used += columns;
    };
    for (const Cluster& cluster : Clusters(text)) {
        if (used + cluster.Columns > place.Columns - (cut ? 1 : 0))
            break;
        put(cluster.Shown, cluster.Columns, underlined == cluster.Start ? A_UNDERLINE : A_NORMAL);
    }
    if (cut && used < place.Columns)
        put(Clusters(Symbol(u"\u2026", u">")).front().Shown, 1, A_NORMAL);
    while (used < place.Columns)
        put(L" ", 1, A_NORMAL);
}

void Screen::Centred(const Cells& place, String_View text, Look look, std::optional<std::size_t> underlined) {
    const auto margin = static_cast<std::size_t>(std::max((place.Columns - terminal::Columns(text)) / 2, 0));
    if (underlined)
        *underlined += margin;
    Text(place, String(margin, u' ').append(text), look, underlined);
}

void Screen::Box(const Cells& place, Look look) {
    auto put = [&](int row, int column, const cchar_t* shape) {
        row += place.Row - scrolled_rows;
        column += place.Column - scrolled_columns;
        if (Is_In_View(row, column, 1))
            ::mvwadd_wch(stdscr, view.Row + row, view.Column + column, shape);
    };
    const int last_row = place.Rows - 1;
    const int last_column = place.Columns - 1;
    Select_Look(look, colours);
    for (int column = 1; column < last_column; ++column) {
        put(0, column, WACS_HLINE);
        put(last_row, column, WACS_HLINE);
    }
    for (int row = 1; row < last_row; ++row) {
        put(row, 0, WACS_VLINE);
        put(row, last_column, WACS_VLINE);
    }
    put(0, 0, WACS_ULCORNER);
    put(0, last_column, WACS_URCORNER);
    put(last_row, 0, WACS_LLCORNER);
    put(last_row, last_column, WACS_LRCORNER);
}

void Screen::Cursor(int row, int column) {
    row -= scrolled_rows;
    column -= scrolled_columns;
    if (Is_In_View(row, column, 1))
        cursor = {view.Row + row, view.Column + column};
}

} // namespace terminal
