// What Displays without a screen have in common: they are told of every change and show none. The screen is
// 15360 x 11520 twips.
#pragma once

#include "toolkit/display.h"

namespace toolkit {

class Headless_Display : public Display {
public:
    Size Screen_Size() const override { return {15360, 11520}; }
    void Form_Loaded(Form&) override {}
    void Form_Unloaded(Form&) override {}
    void Form_Changed(Form&, Property) override {}
    void Control_Changed(Control&, Property) override {}
    void Focus_Changed(Form&) override {}
    void Pointer_Changed() override {}
    void Process_Pending_Messages() override {}
};

} // namespace toolkit
