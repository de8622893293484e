// The product's lookup lists: threshold types and node types, each text in the column of the editor's
// language.
#include "automation/number.h"
#include "data/editor_state.h"

namespace data {

using dialog::Object_Index;
using dialog::Trapped;

String_View Answered_Text(automation::Variant& answer) {
    if (answer.Type() != automation::Variant_Type::Text)
        answer = automation::Variant(answer.To_Text());
    return answer.Text();
}

Reference<recordset::Recordset> XMLStringToRecordset(dialog::Error_Sink& errors, String_View xml) {
    return Trapped(errors, u"XMLStringToRecordset", Object_Index::Busyness_Rules,
                   Reference<recordset::Recordset>(), [&] {
                       auto stream =
                           automation::Create_Bound<recordset::Stream>(recordset::Stream_Program_Identity);
                       stream->Open();
                       stream->Borrow_Text(xml);
                       stream->Set_Position(0);
                       auto records = automation::Create_Bound<recordset::Recordset>(
                           recordset::Recordset_Program_Identity);
                       records->Open(stream, recordset::Cursor_Type::Unspecified,
                                     recordset::Lock_Type::Batch_Optimistic);
                       stream->Close();
                       return records;
                   });
}

void Load_All_Threshold(Editor_State& state, dialog::dlgGUI& form, dialog::Error_Sink& errors) {
    Trapped(errors, u"Load_All_Threshold", Object_Index::Busyness_Rules, [&] {
        const auto types = Read(errors, state.SR_Reader, &interfaces::SR::Get_All_Threshold_Types);
        auto& list = form.cmbThreshold;
        while (!types->At_End()) {
            list.Add_Item(types->Value(Long{state.Language_ID}).To_Text());
            // The newest entry is not the last one of a sorted list.
            const String identifier = types->Value(u"ThresholdTypeID").To_Text();
            list.Set_Item_Data(list.New_Index(), automation::To_Long(identifier));
            types->Move_Next();
        }
        types->Close();
    });
}

void Obtain_All_Node_Type_Name(Editor_State& state, dialog::Error_Sink& errors) {
    Trapped(errors, u"Obtain_All_Node_Type_Name", Object_Index::Busyness_Rules, [&] {
        while (state.Node_Type_Names.Count() > 0) {
            state.Node_Type_Names.Remove(1);
            state.Node_Type_Positions.Remove(1);
        }
        const auto types = Read(errors, state.SR_Reader, &interfaces::SR::Get_All_Node_Types);
        Integer position = 0;
        while (!types->At_End()) {
            position = automation::Add(position, Integer{1});
            const String name = types->Value(Long{state.Language_ID}).To_Text();
            const String key = types->Value(u"ID").To_Text();
            state.Node_Type_Names.Add(name, key);
            state.Node_Type_Positions.Add(position, key);
            types->Move_Next();
        }
        types->Close();
    });
}

String Node_Type_Name_of(const Editor_State& state, Integer node_type) {
    try {
        return state.Node_Type_Names.Item(automation::Decimal_Text(node_type)).To_Text();
    } catch (...) {
        return {};
    }
}

} // namespace data
