// Pictures of a dialog, by the window's module.
#pragma once

#include <string>

#include "automation/text.h"
#include "toolkit/display_factory.h"

namespace host {

// Draws the dialog into a file whenever it is asked to. What goes wrong is kept: it is no error
// of the component that is on the stack.
class Screenshot {
public:
    explicit Screenshot(const std::string& path) : path(automation::From_UTF8_Replacing(path)) {}

    void Take(toolkit::Form& form);
    // Throws Start_Error when a picture could not be drawn.
    void Check() const;

private:
    const automation::Variant path;
    automation::Reference<toolkit::Picture_Maker> maker;
    std::string problem;
};

} // namespace host
