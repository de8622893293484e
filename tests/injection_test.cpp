// Closing, unloading and cancelling in the middle of every handler: at each change that a job makes to a
// control, the dialog goes, and everything that is still on the stack has to notice. The address sanitizer
// watches.
#include <gtest/gtest.h>

#include <sstream>

#include "automation/text.h"
#include "host/job.h"
#include "host/setup.h"
#include "temporary_folder.h"
#include "toolkit/user_input.h"

namespace {

using namespace toolkit;
using automation::Long;

using Injection = void (*)(Form& form);

Control& Named(Form& form, String_View name) {
    return *form.Find(name);
}

// Drives the dialog, and lets it go at the change that is told.
class Injector final : public Display {
public:
    explicit Injector(Injection inject, int at) : inject(inject), at(at) { Set_Display(this); }
    ~Injector() override {
        Discard_All_Forms();
        Set_Display(nullptr);
    }

    Size Screen_Size() const override { return {15360, 11520}; }
    void Form_Loaded(Form&) override {}
    void Form_Unloaded(Form&) override {}
    void Form_Changed(Form& form, Property) override { Tick(form); }
    void Control_Changed(Control& control, Property) override { Tick(control.Owner_Form()); }
    void Focus_Changed(Form& form) override { Tick(form); }
    void Pointer_Changed() override {}
    void Process_Pending_Messages() override {}
    Long Show_Message(const Message& message) override {
        return message.Asks() ? answer::Discard : answer::OK;
    }
    void Run_Modal(Form& form) override {
        const auto keep = form.shared_from_this();
        modal = true;
        Drive(form);
        modal = false;
        static_cast<void>(user_input::Close(form));
    }

    int Changes = 0;

private:
    void Tick(Form& form) {
        if (modal && form.Is_Visible() && ++Changes == at)
            inject(form);
    }

    // One verb of every kind on everything that takes one.
    void Drive(Form& form) const {
        const std::vector<Control*> controls = form.Controls();
        for (const String_View option :
             {u"optEnhanced", u"optFull", u"optDialContinue", u"optBlind", u"optPartial"}) {
            Press(form, option);
            for (Control* control : controls) {
                if (!form.Is_Visible())
                    return;
                static_cast<void>(user_input::Replace(*control, 0, String::npos, u"99999"));
                static_cast<void>(user_input::Type(*control, u"x"));
                static_cast<void>(user_input::Backspace(*control));
                static_cast<void>(user_input::Focus(*control));
            }
        }
        for (const String_View list : {u"cmbThreshold", u"cmbHookFlash", u"cmbNode"})
            if (form.Is_Visible())
                static_cast<void>(user_input::Pick(Named(form, list), 1));
        for (const String_View button :
             {u"cmdApply", u"optFull", u"cmdNext", u"cmdLast", u"optBlind", u"cmdPrevious", u"cmdFirst",
              u"optEnhanced", u"cmdApply", u"optFull", u"cmdOK"})
            Press(form, button);
    }
    static void Press(Form& form, String_View name) {
        if (form.Is_Visible())
            static_cast<void>(user_input::Press(Named(form, name)));
    }

    const Injection inject;
    const int at; // 0: never
    bool modal = false;
};

class Injections : public testing::Test {
protected:
    Injections() {
        options.Store = host::Create_Store({"sqlite:" + folder / "store.db", std::nullopt});
        setup.Start();
    }

    // The changes that the job came to.
    static int Run(Injection inject, int at) {
        Injector injector(inject, at);
        style_node::Editor editor;
        const auto outcome = host::Run_Job(editor, {.Node_Number = 12});
        EXPECT_TRUE(outcome.Shown) << "at change " << at << ": "
                                   << automation::To_UTF8(outcome.Error_Location + u": " +
                                                          outcome.Error_Description);
        EXPECT_TRUE(Loaded_Forms().empty()) << "at change " << at;
        return injector.Changes;
    }
    static void At_Every_Change(Injection inject) {
        const int changes = Run(nullptr, 0);
        ASSERT_GT(changes, 300);
        for (int at = 1; at <= changes && !HasFailure(); ++at)
            Run(inject, at);
    }

    const Temporary_Folder folder;
    host::Common_Options options;
    std::ostringstream unseen;
    host::Transcript transcript{unseen};
    host::Setup setup{options, transcript};
};

TEST_F(Injections, The_Program_Unloads_The_Dialog) {
    At_Every_Change([](Form& form) { form.Unload(); });
}

TEST_F(Injections, A_Person_Closes_The_Dialog) {
    At_Every_Change([](Form& form) { static_cast<void>(user_input::Close(form)); });
}

TEST_F(Injections, A_Person_Cancels_The_Dialog) {
    At_Every_Change(
        [](Form& form) { static_cast<void>(user_input::Press_Key(form, user_input::Key::Escape)); });
}

} // namespace
