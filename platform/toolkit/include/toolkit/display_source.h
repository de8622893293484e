// Where a thread that has installed no Display gets one: a class, found as every other, whose module is
// loaded when the first form is loaded or the first message is shown. It is not asked for in a session
// without a screen, that is, when none of DISPLAY, WAYLAND_DISPLAY and QT_QPA_PLATFORM is set.
//
// The interface hands out C++ objects, so its identity changes with every build that changes the toolkit.
#pragma once

#include "automation/interface.h"
#include "toolkit/form.h"

namespace toolkit {

class Display_Source : public automation::Unknown {
public:
    static constexpr automation::String_View Program_Identity = u"KOR_Window.Display";
    static constexpr automation::Identity Class_Identity{
        0x7E5A0C3D, 0x4816, 0x4B9F, {0x95, 0xD0, 0x1A, 0x6B, 0x83, 0x2F, 0xE4, 0x57}};
    static constexpr automation::Identity Interface_Identity{
        0xC84F2D16, 0x0B73, 0x4A5E, {0x88, 0x29, 0x6F, 0xD1, 0x3C, 0xA0, 0x57, 0xE2}};

    // A Display for the calling thread, which owns it (delete). A failure's description says in one line what
    // is missing and what to do.
    virtual automation::Status Open_Display(Display*& display) = 0;
    // Writes the form's client area, as a window shows it, to a PNG file. The form is loaded, on whatever
    // Display.
    virtual automation::Status Save_Picture(Form& form, const automation::Variant& path) = 0;

protected:
    ~Display_Source() = default;
};

// A Display of the registered or offered source; throws automation::Failure.
std::unique_ptr<Display> Open_Display();

} // namespace toolkit
