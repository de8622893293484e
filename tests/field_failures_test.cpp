// The handlers of the fields and options when a control fails under them, and the order of their writes. The
// dialog runs on a display that fails on demand, for an owner that only takes notes.
#include <gtest/gtest.h>

#include "dialog/dlg_gui.h"
#include "field_rows.h"
#include "toolkit/user_input.h"

namespace {

using automation::Failure;
using automation::String;
using dialog::dlgGUI;
using toolkit::Control;
using toolkit::Property;
namespace user_input = toolkit::user_input;

class Notes final : public automation::Object<dialog::Owner> {
public:
    std::vector<std::string> Errors;
    std::vector<bool> Apply_When_Asked;
    bool Is_Blind = true;
    dlgGUI* Form = nullptr;

    String ErrDescription() const override { return {}; }
    bool SupervisedType_Blind() const override { return Is_Blind; }
    void Set_SupervisedType_Blind(bool value) override { Is_Blind = value; }
    void Load_All_Threshold() override {}
    String Node_Type_Name_of(automation::Integer) override { return {}; }
    String Language_Text(automation::Long) override { return {}; }
    void Edit_Nth_Node(automation::Integer) override {}
    bool Changes_Verified() override { // as if the person dropped the changes
        Apply_When_Asked.push_back(Form->cmdApply.Enabled());
        Form->cmdApply.Set_Enabled(false);
        return true;
    }
    bool Save_Changes() override { return true; }
    void Handle_Error(String Source, automation::String_View Procedure, automation::Long Number,
                      automation::String_View Description, dialog::Object_Index Object) override {
        Errors.push_back(automation::To_UTF8(Source) + " " + automation::To_UTF8(Procedure) + " " +
                         std::to_string(Number) + " " + automation::To_UTF8(Description) + " " +
                         std::to_string(static_cast<int>(Object)));
    }
};

// Fails once, when it is told of one property of one control; otherwise writes down what it is told.
class Failing_Display final : public toolkit::Display {
public:
    std::function<void(toolkit::Form&)> On_Modal;
    const Control* Fails_At = nullptr;
    Property Fails_On = Property::Text;
    std::vector<std::string> Told;

    toolkit::Size Screen_Size() const override { return {15360, 11520}; }
    void Form_Loaded(toolkit::Form&) override {}
    void Form_Unloaded(toolkit::Form&) override {}
    void Form_Changed(toolkit::Form&, Property) override {}
    void Control_Changed(Control& control, Property property) override {
        const std::string name = automation::To_UTF8(control.Name());
        if (property == Property::Enabled)
            Told.push_back(name + (control.Enabled() ? " on" : " off"));
        else if (property == Property::Text || property == Property::Caption)
            Told.push_back(name);
        if (&control != Fails_At || property != Fails_On)
            return;
        Fails_At = nullptr;
        throw Failure(7, u"Out of paint", u"Screen");
    }
    void Focus_Changed(toolkit::Form&) override {}
    void Pointer_Changed() override {}
    void Run_Modal(toolkit::Form& form) override { On_Modal(form); }
    void Process_Pending_Messages() override {}
    automation::Long Show_Message(const toolkit::Message&) override { return toolkit::answer::Not_Shown; }
};

class Field_Failures : public testing::Test {
protected:
    Failing_Display display;
    automation::Reference<Notes> notes;

    void SetUp() override { toolkit::Set_Display(&display); }
    void TearDown() override {
        toolkit::Discard_All_Forms();
        toolkit::Set_Display(nullptr);
    }

    // Opens a dialog, acts on it, and answers whether it closed by that.
    bool Closes(const std::function<void(dlgGUI&)>& act) {
        const auto form = std::make_shared<dlgGUI>();
        notes = automation::Make_Object<Notes>();
        notes->Form = form.get();
        form->Set_Busyness_Rules(notes);
        form->Load();
        for (int item = 0; item < 3; ++item)
            for (toolkit::List_Control* list : Lists(*form))
                list->Add_Item(u"60");
        form->cmdApply.Set_Enabled(false);
        bool closed = false;
        display.On_Modal = [&](toolkit::Form&) {
            act(*form);
            closed = form->Is_Gone();
            form->Unload();
        };
        form->Show_Modal();
        return closed;
    }

    static std::vector<toolkit::List_Control*> Lists(dlgGUI& form) {
        std::vector<toolkit::List_Control*> lists;
        for (Control* control : form.Controls())
            if (auto* list = dynamic_cast<toolkit::List_Control*>(control))
                lists.push_back(list);
        return lists;
    }

    void Fail_At(const Control& control, Property property) {
        display.Fails_At = &control;
        display.Fails_On = property;
    }

    // One report under the handler's name, as a procedure of the dialog.
    void Expect_Report(const std::string& handler, const std::function<user_input::Refusal(dlgGUI&)>& act,
                       bool closes = true) {
        EXPECT_EQ(Closes([&](dlgGUI& form) { EXPECT_FALSE(act(form)) << handler; }), closes) << handler;
        EXPECT_EQ(notes->Errors, std::vector<std::string>{"Screen " + handler + " 7 Out of paint 2"});
    }

    static Control& Named(dlgGUI& form, const std::string& name) {
        return *form.Find(automation::From_UTF8(name).value());
    }
};

} // namespace

TEST_F(Field_Failures, Close_The_Dialog_Under_The_Name_Of_The_Numeric_Handler) {
    for (const std::string name : {"cmbHookFlash", "cmbBusyOn", "cmbBusyOff", "cmbRingOn", "cmbRingOff",
                                   "cmbBusyRetry", "cmbNumRetries", "cmbRingLimit"}) {
        Expect_Report(name + "_Change", [&](dlgGUI& form) {
            Fail_At(form.cmdApply, Property::Enabled);
            return user_input::Replace(Named(form, name), 0, 0, u"7");
        });
        Expect_Report(name + "_Click", [&](dlgGUI& form) {
            Fail_At(form.cmdApply, Property::Enabled);
            return user_input::Pick(Named(form, name), 1);
        });
        Expect_Report(name + "_LostFocus", [&](dlgGUI& form) {
            EXPECT_FALSE(user_input::Focus(Named(form, name)));
            Fail_At(Named(form, name), Property::Text);
            return user_input::Press_Key(form, user_input::Key::Tab);
        });
    }
    Expect_Report("cmbThreshold_Click", [&](dlgGUI& form) {
        Fail_At(form.cmdApply, Property::Enabled);
        return user_input::Pick(form.cmbThreshold, 0);
    });
}

TEST_F(Field_Failures, Close_The_Dialog_For_The_Label_But_Not_For_The_Dial_Strings) {
    for (const std::string name : {"txtTransfer", "txtDisconnect", "txtRetrieve", "txtDescription"})
        Expect_Report(
            name + "_Change",
            [&](dlgGUI& form) {
                Fail_At(form.cmdApply, Property::Enabled);
                return user_input::Replace(Named(form, name), 0, 0, u"1");
            },
            name == "txtDescription");
}

TEST_F(Field_Failures, Close_The_Dialog_Under_The_Name_Of_The_Option) {
    for (const std::string name : {"optBlind", "optPartial", "optFull", "optDialContinue", "optEnhanced"}) {
        Expect_Report(name + "_Click", [&](dlgGUI& form) {
            if (name == "optBlind")
                Fail_At(form.cmbRingOff, Property::Enabled);
            else
                Fail_At(form.lblBusyOff, Property::Caption);
            return user_input::Press(Named(form, name));
        });
        EXPECT_EQ(notes->Apply_When_Asked, std::vector<bool>{false}) << name;
    }
}

TEST_F(Field_Failures, Do_Not_Disturb_The_Order_Of_The_Writes_When_There_Are_None) {
    const auto details =
        Words("lblThreshold cmbThreshold lblRetrieve txtRetrieve lblBusyRetry cmbBusyRetry lblNumRetries "
              "cmbNumRetries lblRingLimit cmbRingLimit lblBusyOn cmbBusyOn lblBusyOff cmbBusyOff lblRingOn "
              "cmbRingOn "
              "lblRingOff cmbRingOff");
    const auto values =
        Words("cmbBusyRetry cmbNumRetries cmbRingLimit cmbBusyOn cmbBusyOff cmbRingOn cmbRingOff");
    for (const std::string option : {"optPartial", "optFull", "optDialContinue", "optEnhanced"}) {
        std::vector<std::string> blind;
        for (const std::string& detail : details)
            blind.push_back(detail + " off");
        blind.push_back("cmdApply on");
        std::vector<std::string> detailed{"lblBusyOn", "lblBusyOff", "txtRetrieve", "cmdApply on"};
        if (option == "optDialContinue") // the others are marked by the first starting value
            std::swap(detailed[2], detailed[3]);
        detailed.insert(detailed.end(), values.begin(), values.end());
        for (const std::string& detail : details)
            detailed.push_back(detail + " on");

        EXPECT_FALSE(Closes([&](dlgGUI& form) {
            display.Told.clear();
            EXPECT_FALSE(user_input::Press(form.optBlind));
            EXPECT_EQ(display.Told, blind);
            form.cmdApply.Set_Enabled(false);
            display.Told.clear();
            EXPECT_FALSE(user_input::Press(Named(form, option)));
            EXPECT_EQ(display.Told, detailed) << option;
            EXPECT_FALSE(notes->Is_Blind);
        }));
        EXPECT_TRUE(notes->Errors.empty());
    }
}
