// The window as a module, so that a host without a screen never loads Qt.
#include "automation/server.h"

#include "automation/text.h"
#include "toolkit/display_factory.h"
#include "toolkit/input_driver.h"
#include "window/any_thread.h"
#include "window/qt_display.h"

namespace {

using automation::Status;

// Qt's threads and statics do not survive the loss of their code: once it runs, the module stays.
void Stay_Loaded() {
    static const automation::Keep_Module to_the_end;
}

class Source final : public automation::Object<toolkit::Display_Factory, toolkit::Played_Display_Factory,
                                               toolkit::Picture_Maker> {
public:
    Status Open_Display(toolkit::Display*& display) override {
        return automation::Guard(toolkit::Window_Identity, [&] {
            Stay_Loaded();
            display = window::Open_Display().release();
        });
    }
    Status Open_Played_Display(toolkit::Display*& display, toolkit::Player& player) override {
        return automation::Guard(toolkit::Window_Identity, [&] {
            Stay_Loaded();
            display = window::Open_Played_Display(player).release();
        });
    }
    Status Save_Picture(toolkit::Form& form, const automation::Variant& path) override {
        return automation::Guard(toolkit::Window_Identity, [&] {
            Stay_Loaded();
            if (!for_pictures && !window::Can_Save_Pictures())
                for_pictures = window::Open_Display();
            window::Save_Picture(form, automation::To_UTF8(path.To_Text()));
        });
    }

private:
    std::unique_ptr<toolkit::Display> for_pictures;
};

automation::Reference<automation::Unknown> Create_Source() {
    return automation::Reference<toolkit::Display_Factory>(automation::Make_Object<Source>());
}

const automation::Server_Class Classes[] = {
    {toolkit::Window_Identity.data(), toolkit::Window_Class, Create_Source, u"Both"}};

} // namespace

AUTOMATION_SERVER(Classes)
