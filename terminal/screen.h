// The terminal while something is shown: cells to draw on, keys to wait for. ncurses stays behind this.
//
// The constructor takes the terminal and its signals, the destructor gives both back. Positions count from 0
// at the top left; what lies outside of the view is not drawn. Belongs to the thread that made it; there is
// one in a process at a time.
#pragma once

#include <cstdio>
#include <locale.h>
#include <memory>
#include <optional>
#include <vector>

#include "key_reader.h"
#include "layout.h"
#include "terminal_signals.h"

struct screen; // ncurses' own

namespace terminal {

// What a dialog is shown on; these are the process's own terminal and the environment's settings.
class Device {
public:
    Device() = default;
    virtual ~Device() = default;
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    std::FILE* In = stdin;
    std::FILE* Out = stdout;
    const char* Type = nullptr; // TERM
    const char* Locale = "";

    virtual void Shown() {}
    virtual void Input_Is_Awaited() {}
};

// How a text looks, with colours or without.
enum class Look { Plain, Border, Title, Field, Focused, Disabled, Default, Hint, Notice };

// Whether standard input and output are a terminal that can be drawn on. Throws Cannot_Show, with what to do
// about it; leaves nothing behind.
void Check_Terminal();

class Screen;

// Something that stands on the screen, above what was put there before it.
class Layer {
public:
    virtual ~Layer() = default;
    virtual void Paint(Screen& screen) = 0;
};

class Screen {
public:
    // Throws Cannot_Show. The device outlives it.
    explicit Screen(Device& device);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    int Rows() const;
    int Columns() const;

    // Layers are shown from the first to the last; they belong to whoever puts them there.
    class Shown_Layer {
    public:
        Shown_Layer(Screen& screen, Layer& layer) : screen(screen) { screen.layers.push_back(&layer); }
        ~Shown_Layer() { screen.layers.pop_back(); }
        Shown_Layer(const Shown_Layer&) = delete;
        Shown_Layer& operator=(const Shown_Layer&) = delete;

    private:
        Screen& screen;
    };

    void Show();
    // Shows the layers and waits; whatever concerns the screen alone is done here.
    Key Wait_For_Key();
    // Why nothing can be shown any more, in one line; null while it can.
    const char16_t* Ending() const { return signals.Ending(); }
    // A key was in vain.
    void Alert();

    // Drawing, from a layer's Paint. The view's places are counted from its own top left, moved by `scrolled`
    // rows and columns.
    void Set_View(const Cells& view, int scrolled_rows = 0, int scrolled_columns = 0);
    // Exactly place.Columns wide: filled with blanks, or cut.
    void Text(const Cells& place, String_View text, Look look, std::optional<std::size_t> underlined = {});
    void Centred(const Cells& place, String_View text, Look look, std::optional<std::size_t> underlined = {});
    void Box(const Cells& place, Look look);
    void Cursor(int row, int column);

private:
    void Take_Terminal();
    void Set_Colours();
    void Fit();
    void Resume();
    void Serve_Signals(bool wait);
    bool Is_In_View(int row, int column, int columns) const;

    Device& device;
    const std::shared_ptr<void> claim; // the only one in the process
    Terminal_Signals signals;
    locale_t locale;
    locale_t former_locale;
    ::screen* terminal = nullptr;
    ::screen* former_terminal = nullptr;
    bool colours = false;
    Key_Reader keys;
    std::vector<Layer*> layers;
    Cells view;
    int scrolled_rows = 0;
    int scrolled_columns = 0;
    std::optional<std::pair<int, int>> cursor;
};

} // namespace terminal
