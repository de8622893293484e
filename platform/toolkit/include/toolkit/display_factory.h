// Where Displays come from: classes, found as every other, whose modules are loaded when they are needed.
//
// A thread that has installed no Display gets one of the window when its first form is loaded or its first
// message is shown; but not in a session without a screen, that is, when none of DISPLAY, WAYLAND_DISPLAY and
// QT_QPA_PLATFORM is set.
//
// The interfaces hand out C++ objects, so their identities change with every build that changes the toolkit.
#pragma once

#include "automation/interface.h"
#include "toolkit/form.h"

namespace toolkit {

constexpr automation::String_View Window_Identity = u"KOR_Window.Display";
constexpr automation::Identity Window_Class{
    0x7E5A0C3D, 0x4816, 0x4B9F, {0x95, 0xD0, 0x1A, 0x6B, 0x83, 0x2F, 0xE4, 0x57}};
constexpr automation::String_View Terminal_Identity = u"KOR_Terminal.Display";
constexpr automation::Identity Terminal_Class{
    0xB9E3410C, 0x5D7A, 0x42F6, {0xA8, 0x1B, 0x60, 0x0F, 0x97, 0xD4, 0x2C, 0x3E}};

class Display_Factory : public automation::Unknown {
public:
    static constexpr automation::Identity Interface_Identity{
        0xC84F2D16, 0x0B73, 0x4A5E, {0x88, 0x29, 0x6F, 0xD1, 0x3C, 0xA0, 0x57, 0xE2}};

    // A Display for the calling thread, which owns it (delete). A failure's description says in one line what
    // is missing and what to do.
    virtual automation::Status Open_Display(Display*& display) = 0;

protected:
    ~Display_Factory() = default;
};

// What the window's class can do besides.
class Picture_Maker : public automation::Unknown {
public:
    static constexpr automation::Identity Interface_Identity{
        0x3F06D1B7, 0xE582, 0x4CA4, {0x96, 0x4D, 0x0A, 0x7B, 0x25, 0xC8, 0xF1, 0x90}};

    // Writes the form's client area, as a window shows it, to a PNG file. The form is loaded, on whatever
    // Display.
    virtual automation::Status Save_Picture(Form& form, const automation::Variant& path) = 0;

protected:
    ~Picture_Maker() = default;
};

class Player;

class Played_Display_Factory : public automation::Unknown {
public:
    static constexpr automation::Identity Interface_Identity{
        0x8A1D9E46, 0x27F3, 0x4C05, {0xB7, 0x62, 0x5E, 0x90, 0xD4, 0x1C, 0x3B, 0xA8}};

    // A Display for the calling thread, which owns it (delete). Its forms and message boxes are really shown,
    // and used by synthesised input: what the player does with its hands. The player outlives the Display.
    virtual automation::Status Open_Played_Display(Display*& display, Player& player) = 0;

protected:
    ~Played_Display_Factory() = default;
};

// A Display of the registered or offered source; throws automation::Failure.
std::unique_ptr<Display> Open_Display(String_View source = Window_Identity);
std::unique_ptr<Display> Open_Played_Display(Player& player, String_View source = Window_Identity);

} // namespace toolkit
