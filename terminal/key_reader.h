// A person's keys, from what a terminal sends.
#pragma once

#include <optional>
#include <string>

#include <wchar.h>

#include "text_cells.h"

namespace terminal {

struct Key {
    enum class Name {
        Character,
        Paste,
        Enter,
        Escape,
        Tab,
        Back_Tab,
        Up,
        Down,
        Left,
        Right,
        Home,
        End,
        Page_Up,
        Page_Down,
        Backspace,
        Delete,
        Select_All,
        Open_List,
        Close,
        Interrupt,
        Repaint,
        Gone // no key: the terminal is, or the program is to end
    };
    Name Which;
    String Text = {}; // of a character or a paste
    bool Alt = false;
};

class Key_Reader {
public:
    // Tells ncurses the sequences of common terminals, whatever TERM claims.
    static void Learn_Sequences();

    // The next key that has arrived; nothing when there is none yet. Never waits, but for the rest of an
    // escape sequence.
    std::optional<Key> Next();

private:
    std::optional<Key> Understood(int code);
    std::optional<Key> After_Escape();
    std::optional<Key> Pasted(int code);
    String Decoded(int byte);

    mbstate_t partial{};
    std::optional<String> paste; // while one comes in
};

} // namespace terminal
