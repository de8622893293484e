// The node list, the navigation and command buttons, and the closing of the dialog.
#include "automation/number.h"
#include "dialog/dlg_gui.h"

namespace dialog {

using automation::Add;
using automation::Subtract;

void dlgGUI::Connect_Commands() {
    using Target = std::function<Integer(Integer)>;
    auto connect_navigation = [this](Command_Button& button, String_View handler, bool backward,
                                     Target target) {
        button.On_Click = [this, handler, backward, target = std::move(target)] {
            Navigate(handler, backward, target);
        };
    };
    connect_navigation(cmdFirst, u"cmdFirst_Click", true, [](Integer) { return Integer{0}; });
    connect_navigation(cmdPrevious, u"cmdPrevious_Click", true,
                       [](Integer index) { return Subtract(index, Integer{1}); });
    connect_navigation(cmdNext, u"cmdNext_Click", false,
                       [](Integer index) { return Add(index, Integer{1}); });
    connect_navigation(cmdLast, u"cmdLast_Click", false, [this](Integer) { return Last_Entry(); });

    cmbNode.On_Click = [this] { Handle(u"cmbNode_Click", [this] { cmbNode_Click(); }); };
    cmdApply.On_Click = [this] { Handle(u"cmdApply_Click", [this] { cmdApply_Click(); }); };
    cmdOK.On_Click = [this] { Handle(u"cmdOK_Click", [this] { cmdOK_Click(); }); };
    cmdCancel.On_Click = [this] { Handle(u"cmdCancel_Click", [this] { Unload(); }); };
    cmdHelp.On_Click = [this] { Handle(u"cmdHelp_Click", [] {}); };
}

void dlgGUI::cmbNode_Click() {
    auto remember = [this] {
        Last_Node_Text = cmbNode.Text();
        Last_Node_Index = automation::To_Integer(static_cast<double>(cmbNode.Selected_Index()));
    };
    if (Last_Node_Text.empty())
        remember();
    if (The_Owner().Changes_Verified()) {
        toolkit::Current_Display().Process_Pending_Messages();
        Set_MousePointer(true, false);
        The_Owner().Edit_Nth_Node(automation::To_Integer(static_cast<double>(cmbNode.Selected_Index())));
        Set_MousePointer(false, false);
        Close_After_Error();
    } else {
        // With Apply off, the run that the move back raises asks nothing.
        cmdApply.Set_Enabled(false);
        cmbNode.Set_Selected_Index(Last_Node_Index);
        cmdApply.Set_Enabled(true);
    }
    remember();
}

Integer dlgGUI::Last_Entry() const {
    return Subtract(automation::To_Integer(static_cast<double>(cmbNode.Count())), Integer{1});
}

void dlgGUI::Navigate(String_View handler, bool backward,
                      const std::function<Integer(Integer index)>& target) {
    Handle(handler, [&] {
        const Integer index = automation::To_Integer(static_cast<double>(cmbNode.Selected_Index()));
        const bool acts = backward ? index > 0 : index < Last_Entry();
        const Integer wanted = acts ? target(index) : index;
        if (acts && The_Owner().Changes_Verified())
            cmbNode.Set_Selected_Index(wanted);
        Close_After_Error();
    });
}

void dlgGUI::cmdApply_Click() {
    if (!The_Owner().Save_Changes())
        return;
    cmdApply.Set_Enabled(false);
    Close_After_Error();
}

void dlgGUI::cmdOK_Click() {
    if (cmdApply.Enabled())
        cmdApply.Set_Value(true);
    if (!cmdApply.Enabled())
        Unload();
}

void dlgGUI::Form_Unload(bool& cancel) {
    try {
        if (The_Owner().Changes_Verified() && !cmdApply.Enabled())
            owner = nullptr;
        else
            cancel = true;
    } catch (const toolkit::Form_Gone&) {
        throw;
    } catch (...) {
        if (owner)
            Report(*owner, u"Form_Unload", Object_Index::dlgGUI);
        owner = nullptr;
    }
}

} // namespace dialog
