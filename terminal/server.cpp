// The terminal as a module, so that only a host that asks for it loads ncurses.
#include "automation/server.h"

#include "terminal/terminal_display.h"
#include "toolkit/display_factory.h"

namespace {

// A Display outlives its source, and its code has to.
void Stay_Loaded() {
    static const automation::Keep_Module to_the_end;
}

class Source final : public automation::Object<toolkit::Display_Factory, toolkit::Played_Display_Factory> {
public:
    automation::Status Open_Display(toolkit::Display*& display) override {
        return automation::Guard(toolkit::Terminal_Identity, [&] {
            Stay_Loaded();
            display = terminal::Create_Terminal_Display().release();
        });
    }
    automation::Status Open_Played_Display(toolkit::Display*& display, toolkit::Player& player) override {
        return automation::Guard(toolkit::Terminal_Identity, [&] {
            Stay_Loaded();
            display = terminal::Create_Played_Terminal_Display(player).release();
        });
    }
};

automation::Reference<automation::Unknown> Create_Source() {
    return automation::Reference<toolkit::Display_Factory>(automation::Make_Object<Source>());
}

const automation::Server_Class Classes[] = {
    {toolkit::Terminal_Identity.data(), toolkit::Terminal_Class, Create_Source}};

} // namespace

AUTOMATION_SERVER(Classes)
