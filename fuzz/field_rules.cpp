// The dialog's fields under any sequence of edits, picks and moves of the focus: what stands in a field
// always obeys its rules, an edit that obeys them stands, and a field that is left is in its range.
//
// The rules are written down here a second time, from what people are told of them. One form serves all runs;
// it is put back to empty fields before each, and made anew when an overflow has closed it.
#include <array>
#include <cmath>
#include <cstdint>

#include "byte_source.h"
#include "dialog/dlg_gui.h"
#include "field_rule.h"
#include "require.h"
#include "toolkit/headless_display.h"
#include "toolkit/user_input.h"

namespace {

using namespace fuzz;
using automation::Long;
using automation::String;
namespace user = toolkit::user_input;

// A person who sees the form and never answers anything but OK.
class Watched_Display final : public toolkit::Headless_Display {
public:
    void Run_Modal(toolkit::Form&) override {} // the form stays visible
    Long Show_Message(const toolkit::Message&) override { return toolkit::answer::OK; }
};

// Discards the changes whenever it is asked.
class Plain_Owner final : public automation::Object<dialog::Owner> {
public:
    void Handle_Error(automation::String_View, automation::String_View, Long number,
                      automation::String_View description, dialog::Object_Index) override {
        REQUIRE(number == automation::run_time::Overflow);
        error = description;
    }
    String ErrDescription() const override { return error; }
    bool SupervisedType_Blind() const override { return is_blind; }
    void Set_SupervisedType_Blind(bool value) override { is_blind = value; }
    void Load_All_Threshold() override {}
    String Node_Type_Name_of(automation::Integer) override { return u"STYLE"; }
    String Language_Text(Long) override { return u"text"; }
    void Edit_Nth_Node(automation::Integer) override {}
    bool Changes_Verified() override {
        dialog::dlgGUI::Default_Instance()->cmdApply.Set_Enabled(false);
        return true;
    }
    bool Save_Changes() override { return true; }

private:
    bool is_blind = false;
    String error;
};

struct Seen_Field {
    toolkit::Text_Control& Control;
    const Field_Rule& Rule;
    String Text = {};             // at the last look
    bool Was_Picked_From = false; // a refused edit then brings back a text from before the pick
};

class Run {
public:
    explicit Run(dialog::dlgGUI& form);
    void Act(Byte_Source& bytes);

private:
    void Empty_Fields();
    void Edit(Seen_Field& field, std::size_t start, std::size_t length, const String& inserted);
    void Type(Seen_Field& field, const String& inserted);
    void Erase(Seen_Field& field);
    void Expect_Edit(Seen_Field& field, const String& wanted);
    void Expect_Left(const toolkit::Control* former);
    void Pick(Seen_Field& field, Long index);
    void Look();
    bool Is_Over() const { return form.Is_Gone(); }

    dialog::dlgGUI& form;
    std::array<Seen_Field, 12> fields;
};

Run::Run(dialog::dlgGUI& form)
    : form(form), fields{{{form.cmbHookFlash, Hook_Flash},
                          {form.cmbBusyOn, Busy},
                          {form.cmbBusyOff, Busy},
                          {form.cmbRingOn, Ring},
                          {form.cmbRingOff, Ring},
                          {form.cmbBusyRetry, Retries},
                          {form.cmbNumRetries, Retries},
                          {form.cmbRingLimit, Ring_Limit},
                          {form.txtTransfer, Dial_String},
                          {form.txtDisconnect, Dial_String},
                          {form.txtRetrieve, Dial_String},
                          {form.txtDescription, Label}}} {
    form.optPartial.Set_Value(true); // its detail fields take input
    Empty_Fields();                  // so that what the last run has left overflows nothing when it is left
    user::Focus(form.cmdOK);
    Empty_Fields();
}

void Run::Empty_Fields() {
    for (auto& field : fields)
        field.Control.Set_Text(u"");
}

void Run::Act(Byte_Source& bytes) {
    const auto verb = bytes.Below(8);
    Seen_Field& field = fields[bytes.Below(fields.size())];
    const toolkit::Control* const former = form.Focused();
    form.cmdApply.Set_Enabled(false);
    switch (verb) {
    case 0:
        Pick(field, static_cast<Long>(bytes.Below(32)));
        break;
    case 1:
        user::Focus(field.Control);
        break;
    case 2:
        user::Press_Key(form, user::Key::Tab);
        break;
    case 3: {
        toolkit::Option_Button* const types[] = {&form.optBlind, &form.optPartial, &form.optEnhanced};
        user::Press(*types[bytes.Below(3)]);
        break;
    }
    case 4:
        Erase(field);
        break;
    case 5:
        Type(field, bytes.Text(1));
        break;
    default: {
        const auto start = bytes.Below(32), length = bytes.Below(32);
        Edit(field, start, length, bytes.Text(bytes.Below(32)));
    }
    }
    if (!Is_Over())
        Expect_Left(former);
    if (!Is_Over())
        Look();
}

void Run::Edit(Seen_Field& field, std::size_t start, std::size_t length, const String& inserted) {
    String wanted = field.Text;
    start = std::min(start, wanted.size());
    wanted.replace(start, std::min(length, wanted.size() - start), inserted);
    if (!user::Replace(field.Control, start, length, inserted) && !Is_Over())
        Expect_Edit(field, wanted);
}

void Run::Type(Seen_Field& field, const String& inserted) {
    if (user::Enter_Text(field.Control) || Is_Over())
        return;
    String wanted = field.Control.Text();
    wanted.insert(field.Control.Selection_Start(), inserted);
    if (!user::Type(field.Control, inserted) && !Is_Over())
        Expect_Edit(field, wanted);
}

void Run::Erase(Seen_Field& field) {
    if (!user::Enter_Text(field.Control) && !Is_Over())
        user::Backspace(field.Control);
}

void Run::Expect_Edit(Seen_Field& field, const String& wanted) {
    const String& text = field.Control.Text();
    const String trimmed = field.Rule.Is_Trimmed ? Without_Spaces(wanted) : wanted;
    if (Obeys(field.Rule, trimmed))
        REQUIRE(text == trimmed);
    if (text != field.Text && !field.Was_Picked_From)
        REQUIRE(form.cmdApply.Enabled());
}

void Run::Pick(Seen_Field& field, Long index) {
    if (user::Pick(field.Control, index) || Is_Over())
        return;
    REQUIRE(form.cmdApply.Enabled());
    field.Was_Picked_From = true;
}

void Run::Expect_Left(const toolkit::Control* former) {
    for (const auto& field : fields)
        if (&field.Control == former && form.Focused() != former)
            REQUIRE(Is_In_Range_When_Left(field.Rule, field.Control.Text()));
}

void Run::Look() {
    for (auto& field : fields) {
        if (field.Control.Text() == field.Text)
            continue;
        field.Text = field.Control.Text();
        REQUIRE(Obeys(field.Rule, field.Text));
    }
}

std::shared_ptr<dialog::dlgGUI> Shown_Form() {
    static Watched_Display display;
    toolkit::Set_Display(&display);
    auto form = dialog::dlgGUI::Default_Instance();
    if (form->Is_Visible())
        return form;
    form->Set_Busyness_Rules(automation::Make_Object<Plain_Owner>());
    form->Load_ComboBoxes();
    form->Show_Modal();
    return form;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto form = Shown_Form();
    Run run(*form);
    for (Byte_Source bytes(data, size); !bytes.Is_Empty() && !form->Is_Gone();)
        run.Act(bytes);
    return 0;
}
