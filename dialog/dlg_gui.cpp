#include "dialog/dlg_gui.h"

#include "automation/number.h"
#include "resources/resources.h"

namespace dialog {

namespace {

std::shared_ptr<toolkit::Form>& Instance() {
    static const char form_class = 0;
    return toolkit::Thread_Instance(&form_class);
}

// The five fields of a cadence or hook flash hold milliseconds, the other three counts or seconds.
constexpr Numeric_Rule Milliseconds(Integer longest, Long upper_bound,
                                    Numeric_Rule::Width bound_width = Numeric_Rule::Width::Bits_32,
                                    Numeric_Rule::Width leave_width = Numeric_Rule::Width::Bits_32) {
    return {longest,
            bound_width,
            upper_bound,
            u"50",
            Numeric_Rule::Caret::Length_Of_Rejected,
            Numeric_Rule::Leave::Value_Below_Minimum,
            leave_width};
}

constexpr Numeric_Rule Count(Long upper_bound) {
    return {2,
            Numeric_Rule::Width::Bits_16,
            upper_bound,
            u"1",
            Numeric_Rule::Caret::End_Of_Restored,
            Numeric_Rule::Leave::Text_Before_Minimum,
            Numeric_Rule::Width::Bits_16};
}

constexpr Numeric_Rule Hook_Flash_Rule = Milliseconds(4, 2000, Numeric_Rule::Width::Bits_16);
constexpr Numeric_Rule Busy_Rule = Milliseconds(4, 1500);
constexpr Numeric_Rule Ring_On_Rule =
    Milliseconds(5, 10000, Numeric_Rule::Width::Bits_32, Numeric_Rule::Width::Bits_16);
constexpr Numeric_Rule Ring_Off_Rule = Milliseconds(5, 10000);
constexpr Numeric_Rule Retry_Rule = Count(30);
constexpr Numeric_Rule Ring_Limit_Rule = Count(20);

} // namespace

dlgGUI::dlgGUI()
    : Form({.Name = u"dlgGUI", .Caption = u"Node Editor", .Client = {4680, 7605}, .Border = {90, 435}}),
      hook_flash(cmbHookFlash, cmdApply, Hook_Flash_Rule), busy_on(cmbBusyOn, cmdApply, Busy_Rule),
      busy_off(cmbBusyOff, cmdApply, Busy_Rule), ring_on(cmbRingOn, cmdApply, Ring_On_Rule),
      ring_off(cmbRingOff, cmdApply, Ring_Off_Rule), busy_retry(cmbBusyRetry, cmdApply, Retry_Rule),
      num_retries(cmbNumRetries, cmdApply, Retry_Rule), ring_limit(cmbRingLimit, cmdApply, Ring_Limit_Rule) {
    Set_Default_Button(cmdOK);
    Set_Cancel_Button(cmdCancel);
    Set_Pictures(resources::Load_Picture);
    Connect_Numeric_Fields();
    Connect_Text_Fields();
    Connect_Supervised_Types();
    Connect_Commands();
}

std::shared_ptr<dlgGUI> dlgGUI::Default_Instance() {
    auto& instance = Instance();
    if (!instance || instance->Is_Gone())
        instance = std::make_shared<dlgGUI>();
    return std::static_pointer_cast<dlgGUI>(instance);
}

void dlgGUI::On_Discarded() {
    owner = nullptr;
    if (Instance().get() == this)
        Instance().reset();
}

Owner& dlgGUI::The_Owner() const {
    if (Is_Gone())
        throw toolkit::Form_Gone{};
    return *owner;
}

void dlgGUI::Handle(String_View handler, const std::function<void()>& body, After_Failure then) {
    try {
        body();
        return;
    } catch (const toolkit::Form_Gone&) {
        throw;
    } catch (...) {
        if (owner)
            Report(*owner, handler, Object_Index::dlgGUI);
    }
    if (then == After_Failure::Close_Dialog)
        Unload();
}

void dlgGUI::Close_After_Error() {
    if (!The_Owner().ErrDescription().empty())
        Unload();
}

void dlgGUI::Set_MousePointer(bool Busy, bool Reset) {
    auto show = [this](Integer pointer) {
        toolkit::screen::Set_Mouse_Pointer(pointer);
        Set_Mouse_Pointer(pointer);
    };
    auto body = [&] {
        if (Reset)
            Busy_Depth = 1;
        if (Busy && !Reset) {
            if (Busy_Depth == 0)
                show(toolkit::Pointer_Hourglass);
            Busy_Depth = automation::Add(Busy_Depth, Integer{1});
            return;
        }
        Busy_Depth = automation::Subtract(Busy_Depth, Integer{1});
        if (Busy_Depth == 0)
            show(toolkit::Pointer_Default);
        if (Busy_Depth < 0)
            Busy_Depth = 0;
    };
    // It reports itself as a procedure of the owning object.
    try {
        body();
    } catch (...) {
        if (owner)
            Report(*owner, u"Set_MousePointer", Object_Index::Busyness_Rules);
    }
}

void dlgGUI::Connect_Numeric_Fields() {
    struct Named_Field {
        Combo_Box& Box;
        Numeric_Field& Field;
        String_View Change, Click, Lost_Focus;
    };
    const Named_Field fields[] = {
        {cmbHookFlash, hook_flash, u"cmbHookFlash_Change", u"cmbHookFlash_Click", u"cmbHookFlash_LostFocus"},
        {cmbBusyOn, busy_on, u"cmbBusyOn_Change", u"cmbBusyOn_Click", u"cmbBusyOn_LostFocus"},
        {cmbBusyOff, busy_off, u"cmbBusyOff_Change", u"cmbBusyOff_Click", u"cmbBusyOff_LostFocus"},
        {cmbRingOn, ring_on, u"cmbRingOn_Change", u"cmbRingOn_Click", u"cmbRingOn_LostFocus"},
        {cmbRingOff, ring_off, u"cmbRingOff_Change", u"cmbRingOff_Click", u"cmbRingOff_LostFocus"},
        {cmbBusyRetry, busy_retry, u"cmbBusyRetry_Change", u"cmbBusyRetry_Click", u"cmbBusyRetry_LostFocus"},
        {cmbNumRetries, num_retries, u"cmbNumRetries_Change", u"cmbNumRetries_Click",
         u"cmbNumRetries_LostFocus"},
        {cmbRingLimit, ring_limit, u"cmbRingLimit_Change", u"cmbRingLimit_Click", u"cmbRingLimit_LostFocus"},
    };
    for (const Named_Field& named : fields) {
        Numeric_Field* const field = &named.Field;
        named.Box.Set_Rule(field->Rule());
        named.Box.On_Change = [this, field, handler = named.Change] {
            Handle(handler, [field] { field->Changed(); });
        };
        named.Box.On_Click = [this, field, handler = named.Click] {
            Handle(handler, [field] { field->Picked(); });
        };
        named.Box.On_Lost_Focus = [this, field, handler = named.Lost_Focus] {
            Handle(handler, [field] { field->Left(); });
        };
    }
    cmbThreshold.On_Click = [this] { Handle(u"cmbThreshold_Click", [this] { cmdApply.Set_Enabled(true); }); };
}

void dlgGUI::Connect_Text_Fields() {
    auto connect_dial = [this](Text_Box& box, Dial_Field& field, String_View handler) {
        box.Set_Rule(Dial_Field::Rule());
        box.On_Change = [this, &field, handler] {
            Handle(
                handler, [&field] { field.Changed(); }, After_Failure::Only_Report);
        };
    };
    connect_dial(txtTransfer, transfer, u"txtTransfer_Change");
    connect_dial(txtDisconnect, disconnect, u"txtDisconnect_Change");
    connect_dial(txtRetrieve, retrieve, u"txtRetrieve_Change");
    txtDescription.Set_Rule(Label_Field::Rule());
    txtDescription.On_Change = [this] {
        Handle(u"txtDescription_Change", [this] { description.Changed(); });
    };
}

} // namespace dialog
