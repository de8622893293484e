// The terminal as a module, so that only a host that asks for it loads ncurses.
#include "automation/server.h"

#include "terminal/terminal_display.h"
#include "toolkit/display_source.h"

namespace {

class Source final : public automation::Object<toolkit::Display_Source> {
public:
    automation::Status Open_Display(toolkit::Display*& display) override {
        return automation::Guard(toolkit::Terminal_Identity, [&] {
            // A Display outlives its source, and its code has to.
            static const automation::Keep_Module to_the_end;
            display = terminal::Create_Terminal_Display().release();
        });
    }
};

automation::Reference<automation::Unknown> Create_Source() {
    return automation::Make_Object<Source>();
}

const automation::Server_Class Classes[] = {
    {toolkit::Terminal_Identity.data(), toolkit::Terminal_Class, Create_Source}};

} // namespace

AUTOMATION_SERVER(Classes)
