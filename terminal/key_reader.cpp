#include "key_reader.h"

#define NCURSES_NOMACROS
#include <curses.h>

namespace terminal {

namespace {

// Keys that ncurses has no number for.
enum Own_Key { Alt_Arrow = KEY_MAX + 1, Paste_Begin, Paste_End };

struct Sequence {
    const char* Sent;
    int Code;
};
constexpr Sequence Sequences[] = {
    {"\033[A", KEY_UP},         {"\033OA", KEY_UP},        {"\033[B", KEY_DOWN},
    {"\033OB", KEY_DOWN},       {"\033[C", KEY_RIGHT},     {"\033OC", KEY_RIGHT},
    {"\033[D", KEY_LEFT},       {"\033OD", KEY_LEFT},      {"\033[H", KEY_HOME},
    {"\033OH", KEY_HOME},       {"\033[1~", KEY_HOME},     {"\033[7~", KEY_HOME},
    {"\033[F", KEY_END},        {"\033OF", KEY_END},       {"\033[4~", KEY_END},
    {"\033[8~", KEY_END},       {"\033[3~", KEY_DC},       {"\033[5~", KEY_PPAGE},
    {"\033[6~", KEY_NPAGE},     {"\033[Z", KEY_BTAB},      {"\033OS", KEY_F(4)},
    {"\033[14~", KEY_F(4)},     {"\033[[D", KEY_F(4)},     {"\033OM", KEY_ENTER},
    {"\033[1;3A", Alt_Arrow},   {"\033[1;3B", Alt_Arrow},  {"\033\033[A", Alt_Arrow},
    {"\033\033[B", Alt_Arrow},  {"\033\033OA", Alt_Arrow}, {"\033\033OB", Alt_Arrow},
    {"\033[200~", Paste_Begin}, {"\033[201~", Paste_End}};

constexpr int Control(char letter) {
    return letter & 0x1F;
}

struct Meaning {
    int Code;
    Key::Name Name;
};
constexpr Meaning Meanings[] = {{'\r', Key::Name::Enter},
                                {'\n', Key::Name::Enter},
                                {KEY_ENTER, Key::Name::Enter},
                                {'\t', Key::Name::Tab},
                                {KEY_BTAB, Key::Name::Back_Tab},
                                {KEY_UP, Key::Name::Up},
                                {KEY_DOWN, Key::Name::Down},
                                {KEY_LEFT, Key::Name::Left},
                                {KEY_RIGHT, Key::Name::Right},
                                {KEY_HOME, Key::Name::Home},
                                {Control('A'), Key::Name::Select_All},
                                {KEY_END, Key::Name::End},
                                {Control('E'), Key::Name::End},
                                {KEY_PPAGE, Key::Name::Page_Up},
                                {KEY_NPAGE, Key::Name::Page_Down},
                                {'\b', Key::Name::Backspace},
                                {0x7F, Key::Name::Backspace},
                                {KEY_BACKSPACE, Key::Name::Backspace},
                                {KEY_DC, Key::Name::Delete},
                                {Control('D'), Key::Name::Delete},
                                {KEY_F(4), Key::Name::Open_List},
                                {Alt_Arrow, Key::Name::Open_List},
                                {Control('Q'), Key::Name::Close},
                                {Control('C'), Key::Name::Interrupt},
                                {Control('L'), Key::Name::Repaint}};

constexpr int Escape = 0x1B;

void Append(String& text, wchar_t character) {
    const auto value = static_cast<char32_t>(character);
    if (value < 0x10000) {
        text.push_back(static_cast<char16_t>(value));
        return;
    }
    text.push_back(static_cast<char16_t>(0xD800 + ((value - 0x10000) >> 10)));
    text.push_back(static_cast<char16_t>(0xDC00 + (value & 0x3FF)));
}

} // namespace

void Key_Reader::Learn_Sequences() {
    for (const Sequence& sequence : Sequences)
        ::define_key(sequence.Sent, sequence.Code);
}

std::optional<Key> Key_Reader::Next() {
    for (int code = ::wgetch(stdscr); code != ERR; code = ::wgetch(stdscr)) {
        auto key = paste || code == Paste_Begin ? Pasted(code)
                   : code == Escape             ? After_Escape()
                                                : Understood(code);
        if (key)
            return key;
    }
    return {};
}

std::optional<Key> Key_Reader::Understood(int code) {
    for (const Meaning& meaning : Meanings)
        if (meaning.Code == code)
            return Key{meaning.Name};
    const String text = code < 0x100 ? Decoded(code) : String();
    if (text.empty() || text.front() < u' ')
        return {};
    return Key{Key::Name::Character, text};
}

// Alone it is the key, before a character it is Alt. What ncurses does not know of longer sequences is
// dropped as a whole: its rest would be typed otherwise.
std::optional<Key> Key_Reader::After_Escape() {
    int code = ::wgetch(stdscr);
    if (code == ERR || code == Escape)
        return Key{Key::Name::Escape};
    const int first = code;
    if (first == '[' || first == 'O')
        code = ::wgetch(stdscr);
    if (first == '[' || (first == 'O' && code != ERR)) {
        while (code != ERR && (code < 0x40 || code > 0x7E))
            code = ::wgetch(stdscr);
        return {};
    }
    auto key = Understood(first);
    if (key)
        key->Alt = true;
    return key;
}

// Line ends and the like do nothing in a paste, least of all press the default button.
std::optional<Key> Key_Reader::Pasted(int code) {
    if (code == Paste_End || code == Control('C')) {
        Key key{Key::Name::Paste, *paste};
        paste.reset();
        return key;
    }
    if (code == Paste_Begin)
        paste.emplace();
    else if (code >= ' ' && code < 0x100 && code != 0x7F)
        *paste += Decoded(code);
    return {};
}

// The character that the byte completes; empty as long as it is not complete.
String Key_Reader::Decoded(int byte) {
    const char sent = static_cast<char>(byte);
    wchar_t character = 0;
    String text;
    const std::size_t used = ::mbrtowc(&character, &sent, 1, &partial);
    if (used == static_cast<std::size_t>(-1))
        partial = {};
    else if (used != static_cast<std::size_t>(-2))
        Append(text, character);
    return text;
}

} // namespace terminal
