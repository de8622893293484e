// What a person sees of a form and its controls, as far as it can be told in words and numbers. Pure data.
#pragma once

#include "toolkit/form.h"

namespace toolkit {

struct Control_Snapshot {
    bool Enabled = false; // it, and
    bool Visible = false; // not what contains it
    Rectangle Place;      // in its container
    String Caption;
    bool Value = false; // of an option button
    String Text;        // of a field or a list
    std::size_t Caret = 0;
    automation::Long Index = -1;
    automation::Long Count = 0;
};

struct Form_Snapshot {
    String Caption;
    Rectangle Place;
    String Focus; // the control that has it; empty: none
};

// What the controls themselves hold.
Control_Snapshot Held_By(const Control& control);
Form_Snapshot Held_By(const Form& form);

} // namespace toolkit
