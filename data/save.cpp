// Saves the shown node through the product's components, in a fixed order and without a transaction around
// it: what was written before a failure stays written.
#include "automation/number.h"
#include "records.h"
#include "shell/clock.h"

namespace data {

using automation::Decimal_Text;
using automation::Variant;
using dialog::Object_Index;
using dialog::Trapped;

namespace {

constexpr Long Information_Box = 64; // OK button, information icon

void Refuse_Label() {
    toolkit::Show_Message(
        {.Text = u"Double quotes and continuous single quotes are not allowed in the Label Field",
         .Style = Information_Box,
         .Title = u"Information"});
    auto pending = automation::Take_Error();
    automation::Set_Error(automation::Failure(pending ? pending->Number : 0, u"Illegal characters",
                                              pending ? pending->Source : String()));
}

// The label as it is to be stored; nothing when the checker refuses it.
std::optional<String> Checked_Label(const String& label) {
    const auto checker = automation::Bind<interfaces::Label_Checker>(
        automation::Create_Object(interfaces::Label_Checker::Class_Identity));
    Automation_Boolean allowed = AUTOMATION_FALSE;
    Call(checker, &interfaces::Label_Checker::Is_Label_Allowed, Variant(label), allowed);
    if (!allowed) {
        Refuse_Label();
        return std::nullopt;
    }
    Variant prepared;
    Call(checker, &interfaces::Label_Checker::Prepare_Label, Variant(label), prepared);
    return prepared.To_Text();
}

// The type whose option is selected; none selected counts as Enhanced. Null is Blind.
const Detailed_Type* Selected_Type(const dialog::dlgGUI& form) {
    if (form.optBlind.Value())
        return nullptr;
    for (const Detailed_Type& type : Detailed_Types)
        if (type.Supervise_ID == Enhanced || (form.*type.Option).Value())
            return &type;
    return nullptr;
}

void Delete_Detail(const Detailed_Type& type, const Editor_State& state, const Node_Key& node) {
    Call(state.Nodes_Deleter, type.Delete, node.Config_ID, node.Partition_ID, node.Node_Number);
}

void Replace_Detail(const Detailed_Type& type, const Editor_State& state, const Node_Key& node,
                    const dialog::dlgGUI& form, const String& retrieve) {
    Delete_Detail(type, state, node);
    Call(state.Nodes_Inserter, type.Insert, node.Config_ID, node.Partition_ID, node.Node_Number,
         Decimal_Text(type.Supervise_ID), retrieve, form.cmbBusyRetry.Text(), form.cmbNumRetries.Text(),
         form.cmbRingLimit.Text(), form.cmbBusyOn.Text(), form.cmbBusyOff.Text(), form.cmbRingOn.Text(),
         form.cmbRingOff.Text());
}

// Puts the current record of the fresh list back on the saved node. The number is read at the end of the
// records too, so that a node which is not listed any more fails here.
void Return_To_Saved_Node(Editor_State& state) {
    for (;;) {
        const bool at_end = state.Nodes_Recordset->At_End();
        const bool found = state.Nodes_Recordset->Value(field::Node_Number).To_Integer() == state.Node_Number;
        if (at_end || found)
            return;
        state.Nodes_Recordset->Move_Next();
    }
}

void Reload_Nodes(Editor_State& state, dialog::Error_Sink& errors, const Node_Key& node) {
    Variant xml;
    Call(state.Nodes_Reader, &interfaces::NODES::Get_Style_Nodes, node.Config_ID, node.Partition_ID, xml);
    const String_View text = Answered_Text(xml);
    state.Nodes_Recordset->Close();
    state.Nodes_Recordset = XMLStringToRecordset(errors, text);
    Return_To_Saved_Node(state);
}

bool Save(Editor_State& state, dialog::dlgGUI& form, dialog::Error_Sink& errors) {
    const Integer former_id = state.Nodes_Recordset->Value(field::Supervise_ID).To_Integer();
    const Detailed_Type* const type = Selected_Type(form);
    const Integer new_id = type ? type->Supervise_ID : Blind;
    const String caption = (type ? form.*type->Option : form.optBlind).Caption();
    const auto label = Checked_Label(form.txtDescription.Text());
    if (!label)
        return false;

    const Node_Key node(state);
    const Long threshold = form.cmbThreshold.Item_Data(form.cmbThreshold.Selected_Index());
    Call(state.Nodes_Updater, &interfaces::UDNODES::Update_Style_Node, node.Config_ID, node.Partition_ID,
         node.Node_Number, form.cmbHookFlash.Text(), Decimal_Text(threshold), form.txtTransfer.Text(),
         form.txtDisconnect.Text(), caption, Decimal_Text(new_id), *label);

    const Detailed_Type* const former = Detailed_Type_Of(former_id);
    if (former && former != type)
        Delete_Detail(*former, state, node);
    if (type)
        Replace_Detail(*type, state, node, form, form.txtRetrieve.Text());

    Call(state.Nodes_Updater, &interfaces::UDNODES::Update_Node_Entry, *label, shell::General_Date_Text(),
         node.Config_ID, node.Partition_ID, Decimal_Text(Style_Node_Type), node.Node_Number);
    Reload_Nodes(state, errors, node);
    return true;
}

} // namespace

bool Save_Changes(Editor_State& state, dialog::dlgGUI& form, dialog::Error_Sink& errors) {
    return Trapped(errors, u"Save_Changes", Object_Index::Busyness_Rules, true,
                   [&] { return Save(state, form, errors); });
}

} // namespace data
