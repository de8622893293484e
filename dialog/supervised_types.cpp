// The five option buttons: which detail fields are enabled, how the busy fields are captioned, and the
// starting values of a node that stops being Blind.
#include "dialog/dlg_gui.h"

namespace dialog {

void dlgGUI::Connect_Supervised_Types() {
    optBlind.On_Click = [this] { Handle(u"optBlind_Click", [this] { optBlind_Click(); }); };
    struct Detailed_Type {
        Option_Button& Option;
        String_View Handler;
        const String& On_Caption;
        const String& Off_Caption;
        Apply_Enabled Order;
    };
    const Detailed_Type types[] = {
        {optPartial, u"optPartial_Click", busy_on_caption, busy_off_caption,
         Apply_Enabled::After_Starting_Values},
        {optFull, u"optFull_Click", busy_on_caption, busy_off_caption, Apply_Enabled::After_Starting_Values},
        {optDialContinue, u"optDialContinue_Click", busy_on_caption, busy_off_caption,
         Apply_Enabled::Before_Starting_Values},
        {optEnhanced, u"optEnhanced_Click", busy1_on_caption, busy2_on_caption,
         Apply_Enabled::After_Starting_Values},
    };
    for (const Detailed_Type& type : types) {
        type.Option.On_Click = [this, handler = type.Handler, on = &type.On_Caption, off = &type.Off_Caption,
                                order = type.Order] {
            Handle(handler, [&] { Switch_To_Detailed_Type(*on, *off, order); });
        };
    }
}

void dlgGUI::optBlind_Click() {
    Disable_Details();
    cmdApply.Set_Enabled(true);
}

void dlgGUI::Switch_To_Detailed_Type(const String& on_caption, const String& off_caption,
                                     Apply_Enabled order) {
    fra.Set_Visible(true);
    lblBusyOn.Set_Caption(on_caption);
    lblBusyOff.Set_Caption(off_caption);
    if (order == Apply_Enabled::Before_Starting_Values)
        cmdApply.Set_Enabled(true);
    if (The_Owner().SupervisedType_Blind()) {
        Write_Starting_Values();
        The_Owner().Set_SupervisedType_Blind(false);
    }
    if (order == Apply_Enabled::After_Starting_Values)
        cmdApply.Set_Enabled(true);
    Enable_Details();
}

void dlgGUI::Write_Starting_Values() {
    txtRetrieve.Set_Text(u"!");
    cmbBusyRetry.Set_Text(u"4");
    cmbNumRetries.Set_Text(u"3");
    cmbRingLimit.Set_Text(u"5");
    cmbBusyOn.Set_Text(u"500");
    cmbBusyOff.Set_Text(u"500");
    cmbRingOn.Set_Text(u"2000");
    cmbRingOff.Set_Text(u"4000");
}

void dlgGUI::Switch_Details(bool enabled) {
    toolkit::Control* const details[] = {
        &lblThreshold,  &cmbThreshold,  &lblRetrieve,  &txtRetrieve,  &lblBusyRetry, &cmbBusyRetry,
        &lblNumRetries, &cmbNumRetries, &lblRingLimit, &cmbRingLimit, &lblBusyOn,    &cmbBusyOn,
        &lblBusyOff,    &cmbBusyOff,    &lblRingOn,    &cmbRingOn,    &lblRingOff,   &cmbRingOff,
    };
    for (toolkit::Control* detail : details)
        detail->Set_Enabled(enabled);
}

} // namespace dialog
