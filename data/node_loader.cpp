// Shows a node: its record in the fields common to all types, its detail record in the frame's fields.
#include "automation/number.h"
#include "records.h"

namespace data {

using automation::Variant;
using dialog::Object_Index;
using dialog::Trapped;

namespace {

String Text_Or(const Variant& value, String_View when_null) {
    return value.Is_Null() ? String(when_null) : value.To_Text();
}

// Honours the marker that stands for an absent text as well.
String Marked_Text_Or(const Variant& value, String_View when_null) {
    const String text = Text_Or(value, when_null);
    return text == Null_Marker ? String(when_null) : text;
}

void Show_Detail_Record(const recordset::Recordset& record, const Detailed_Type& type, dialog::dlgGUI& form) {
    form.txtRetrieve.Set_Text(Marked_Text_Or(record.Value(field::Retrieve), u"!"));
    struct Row {
        toolkit::Text_Control& Control;
        String_View Field;
        String_View When_Null;
    };
    const Row rows[] = {
        {form.cmbBusyRetry, u"BusyRetry", u"4"},
        {form.cmbNumRetries, u"NumberRetries", u"3"},
        {form.cmbRingLimit, u"RingLimit", u"5"},
        {form.cmbBusyOn, type.First_Busy_Field, u"500"},
        {form.cmbBusyOff, type.Second_Busy_Field, u"500"},
        {form.cmbRingOn, u"RingOn", u"2000"},
        {form.cmbRingOff, u"RingOff", u"4000"},
    };
    for (const Row& row : rows)
        row.Control.Set_Text(Text_Or(record.Value(row.Field), row.When_Null));
}

// A failing load is reported under the loader's name and never stops the rest of the node from being shown.
void Load_Detail(const Detailed_Type& type, Editor_State& state, dialog::dlgGUI& form,
                 dialog::Error_Sink& errors) {
    Trapped(errors, type.Loader, Object_Index::Busyness_Rules, [&] {
        const Node_Key node(state);
        const auto record =
            Read(errors, state.Nodes_Reader, type.Get, node.Config_ID, node.Partition_ID, node.Node_Number);
        if (!record->At_End())
            Show_Detail_Record(*record, type, form);
        record->Close();
    });
}

void Show_Supervised_Type(Integer supervise_id, Editor_State& state, dialog::dlgGUI& form,
                          dialog::Error_Sink& errors) {
    if (supervise_id == Blind) {
        form.optBlind.Set_Value(true);
        state.Is_SupervisedType_Blind = true;
    } else if (const Detailed_Type* type = Detailed_Type_Of(supervise_id)) {
        (form.*type->Option).Set_Value(true);
        form.fra.Set_Visible(true);
        form.lblBusyOn.Set_Caption((form.*type->Busy_On_Caption)());
        form.lblBusyOff.Set_Caption((form.*type->Busy_Off_Caption)());
        Load_Detail(*type, state, form, errors);
        state.Is_SupervisedType_Blind = false;
    }
}

void Select_Threshold(const Variant& threshold, toolkit::Combo_Box& list) {
    constexpr Integer when_null = 7;
    const Integer wanted = threshold.Is_Null() ? when_null : threshold.To_Integer();
    for (Long index = 0; index < list.Count(); ++index)
        if (list.Item_Data(index) == wanted)
            return list.Set_Selected_Index(index);
}

void Show_Position(const Editor_State& state, dialog::dlgGUI& form) {
    const auto& list = form.cmbNode;
    form.lblRecordPosition.Set_Caption(automation::Decimal_Text(state.Node_Position) + u" of " +
                                       automation::Decimal_Text(list.Count()));
    form.cmdPrevious.Set_Enabled(list.Selected_Index() > 0);
    form.cmdFirst.Set_Enabled(form.cmdPrevious.Enabled());
    form.cmdApply.Set_Enabled(false); // the writes above have marked the node as changed
    form.cmdNext.Set_Enabled(list.Selected_Index() < list.Count() - 1);
    form.cmdLast.Set_Enabled(form.cmdNext.Enabled());
}

} // namespace

void Reflect_The_Node_Into_The_Dialog(Editor_State& state, dialog::dlgGUI& form, dialog::Error_Sink& errors) {
    Trapped(errors, u"Reflect_The_Node_Into_The_Dialog", Object_Index::Busyness_Rules, [&] {
        const auto& node = state.Nodes_Recordset;
        form.txtDescription.Set_Text(Marked_Text_Or(node->Value(field::Description), u""));
        const Variant type = node->Value(field::Supervise_ID);
        Show_Supervised_Type(type.Is_Null() ? Blind : type.To_Integer(), state, form, errors);
        form.cmbHookFlash.Set_Text(Text_Or(node->Value(field::Hookflash), u""));
        Select_Threshold(node->Value(field::Threshold_Type_ID), form.cmbThreshold);
        form.txtTransfer.Set_Text(Text_Or(node->Value(field::Transfer), u""));
        form.txtDisconnect.Set_Text(Text_Or(node->Value(field::Disconnection), u""));
        Show_Position(state, form);
    });
}

} // namespace data
