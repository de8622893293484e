// Closing, unloading and cancelling in the middle of every handler: at each change that a job makes to a
// control, the dialog goes, and everything that is still on the stack has to notice. The address sanitizer
// watches.
#include <gtest/gtest.h>

#include <sstream>

#include "automation/text.h"
#include "run_setup/setup.h"
#include "run_setup/store_choice.h"
#include "scripts/script_display.h"
#include "temporary_folder.h"
#include "toolkit/display_factory.h"
#include "toolkit/user_input.h"
#include "transcript/box_reporter.h"
#include "transcript/job.h"

// What Qt keeps for the window's own thread, which runs to the end of the process: as in cmake/leaks.supp.
extern "C" const char* __lsan_default_suppressions(); // NOLINT: the sanitizer calls it so
const char* __lsan_default_suppressions() {
    return "leak:libQt6Core.so\n";
}

namespace {

using namespace toolkit;
using automation::Long;

using Injection = void (*)(Form& form);

// Lets the dialog that is shown on another display go at the change that is told.
class Injector final : public host::Box_Reporter {
public:
    Injector(Display& inner, host::Transcript& unseen, Injection inject, int at)
        : Box_Reporter(inner, unseen), inject(inject), at(at) {
        Set_Display(this);
    }
    ~Injector() override {
        Discard_All_Forms();
        Set_Display(nullptr);
    }

    void Form_Changed(Form& form, Property property) override {
        Box_Reporter::Form_Changed(form, property);
        Tick(form);
    }
    void Control_Changed(Control& control, Property property) override {
        Box_Reporter::Control_Changed(control, property);
        Tick(control.Owner_Form());
    }
    void Focus_Changed(Form& form) override {
        Box_Reporter::Focus_Changed(form);
        Tick(form);
    }

    int Changes = 0;
    bool Counts = false;

private:
    void Tick(Form& form) {
        if (Counts && form.Is_Visible() && ++Changes == at)
            inject(form);
    }
    const Injection inject;
    const int at; // 0: never
};

// A person who does every kind of thing to everything that takes it, or to one control of each family.
class Driver {
public:
    Driver(Form& form, toolkit::Input_Driver& hands) : form(form), hands(hands) {}

    void Do_All() const {
        for (const String_View option :
             {u"optEnhanced", u"optFull", u"optDialContinue", u"optBlind", u"optPartial"}) {
            Press(option);
            for (Control* control : form.Controls())
                Edit(*control);
        }
        Pick_And_Move({u"cmbThreshold", u"cmbHookFlash", u"cmbNode"},
                      {u"cmdApply", u"optFull", u"cmdNext", u"cmdLast", u"optBlind", u"cmdPrevious",
                       u"cmdFirst", u"optEnhanced", u"cmdApply", u"optFull", u"cmdOK"});
    }
    void Do_Some() const {
        Press(u"optFull");
        for (const String_View name : {u"txtDescription", u"cmbHookFlash", u"txtRetrieve"})
            Edit(*form.Find(name));
        Pick_And_Move({u"cmbThreshold", u"cmbNode"},
                      {u"cmdNext", u"optBlind", u"cmdApply", u"optFull", u"cmdOK"});
    }

private:
    void Pick_And_Move(std::initializer_list<String_View> lists,
                       std::initializer_list<String_View> buttons) const {
        for (const String_View list : lists)
            if (form.Is_Visible())
                static_cast<void>(hands.Pick(*form.Find(list), 1));
        for (const String_View button : buttons)
            Press(button);
    }
    void Edit(Control& control) const {
        if (form.Is_Visible())
            static_cast<void>(hands.Replace(control, 0, String::npos, u"99999"));
        if (form.Is_Visible() && !hands.Enter_Text(control) && form.Is_Visible())
            static_cast<void>(hands.Type(control, u"x"));
        if (form.Is_Visible() && !hands.Enter_Text(control) && form.Is_Visible())
            static_cast<void>(hands.Backspace(control));
        if (form.Is_Visible())
            static_cast<void>(hands.Focus(control));
    }
    void Press(String_View name) const {
        if (form.Is_Visible())
            static_cast<void>(hands.Press(*form.Find(name)));
    }
    Form& form;
    toolkit::Input_Driver& hands;
};

// On the bare controls, or on real widgets and in a terminal, by the input that a person gives them.
class Injections : public testing::TestWithParam<std::string> {
protected:
    Injections() {
        options.Store = host::Create_Store("sqlite:" + folder / "store.db", std::nullopt);
        setup.Start();
        person.Answer_To_Close();
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
        if (GetParam() != "Bare")
            place = Open_Played_Display(person, GetParam() == "Window" ? Window_Identity : Terminal_Identity);
    }

    // The changes that the job came to.
    int Run(Injection inject, int at) {
        Injector injector(place ? *place : person, transcript, inject, at);
        person.On_Modal = [&](Form& form, toolkit::Input_Driver& hands) {
            const auto keep = form.shared_from_this();
            injector.Counts = true;
            const Driver driver(form, hands);
            place ? driver.Do_Some() : driver.Do_All();
            injector.Counts = false;
            if (form.Is_Visible())
                static_cast<void>(hands.Close(form));
        };
        style_node::Editor editor;
        const auto outcome = host::Run_Job(editor, {.Node_Number = 12});
        EXPECT_TRUE(outcome.Shown) << "at change " << at << ": "
                                   << automation::To_UTF8(outcome.Error_Location + u": " +
                                                          outcome.Error_Description);
        EXPECT_TRUE(Loaded_Forms().empty()) << "at change " << at;
        return injector.Changes;
    }
    void At_Every_Change(Injection inject) {
        const int changes = Run(nullptr, 0);
        ASSERT_GT(changes, place ? 100 : 300);
        for (int at = 1; at <= changes && !HasFailure(); ++at)
            Run(inject, at);
    }

    const Temporary_Folder folder;
    host::Common_Options options;
    std::ostringstream unseen;
    host::Transcript transcript{unseen};
    host::Setup setup{options, transcript};
    host::Script_Display person;
    std::unique_ptr<Display> place; // null: the bare controls
};

TEST_P(Injections, The_Program_Unloads_The_Dialog) {
    At_Every_Change([](Form& form) { form.Unload(); });
}

TEST_P(Injections, A_Person_Closes_The_Dialog) {
    At_Every_Change([](Form& form) { static_cast<void>(user_input::Close(form)); });
}

TEST_P(Injections, A_Person_Cancels_The_Dialog) {
    At_Every_Change(
        [](Form& form) { static_cast<void>(user_input::Press_Key(form, user_input::Key::Escape)); });
}

INSTANTIATE_TEST_SUITE_P(Shown, Injections, testing::Values("Bare", "Window", "Terminal"),
                         [](const auto& place) { return place.param; });

} // namespace
