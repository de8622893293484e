// The partition's nodes: the list, the moves in it, and the questions that go with them.
#include "automation/number.h"
#include "busyness_rules.h"

namespace component {

using automation::Add;
using automation::Decimal_Text;
using automation::Subtract;

namespace {

// Ids of the message texts.
constexpr Long Confirmation_Title = 53;
constexpr Long Information_Title = 54;
constexpr Long Save_Question = 55;
constexpr Long Node_Not_Found = 57;

// Kinds and button sets of the product's message box.
constexpr Long Question = 1;
constexpr Long Information = 2;
constexpr Long One_Button = 1;
constexpr Long Save_Buttons = 3;

Integer Number_Of(const recordset::Recordset& nodes) {
    return nodes.Value(u"NodeNumber").To_Integer();
}

} // namespace

bool Busyness_Rules::Node_Editor_Populated() {
    return dialog::Trapped(*this, u"Node_Editor_Populated", Object_Index::Busyness_Rules, false, [this] {
        state.Nodes_Recordset = data::Read(*this, state.Nodes_Reader, &interfaces::NODES::Get_Style_Nodes,
                                           Decimal_Text(state.Config_ID), Decimal_Text(state.Partition_ID));
        state.Node_Position = 0;
        Form().cmbNode.Clear();
        const Variant wanted = List_Nodes();
        if (wanted.Type() == automation::Variant_Type::Empty) {
            Selected_Node_Not_Found();
            return false;
        }
        state.Nodes_Recordset->Set_Bookmark(wanted);
        Form().cmbNode.Set_Selected_Index(Subtract(state.Node_Position, Integer{1}));
        return state.Error_Description.empty();
    });
}

// Lists the nodes that can be moved to. The first one whose number is at least the requested one is wanted;
// the default node is listed alone or not at all.
Variant Busyness_Rules::List_Nodes() {
    auto& nodes = state.Nodes_Recordset;
    const String type_name = Node_Type_Name_of(data::Style_Node_Type); // nothing in the loop can change it
    auto& form = Form();
    Variant wanted;
    for (; !nodes->At_End(); nodes->Move_Next()) {
        const Integer number = Number_Of(*nodes);
        if (state.Is_Editing_Default_Node != (number == 0))
            continue;
        const bool looking = wanted.Type() == automation::Variant_Type::Empty;
        if (state.Is_Editing_Default_Node)
            Make_Room_For_Default_Node();
        if (looking) {
            state.Node_Position = Add(state.Node_Position, Integer{1});
            if (state.Is_Editing_Default_Node || number >= state.Node_Number)
                wanted = nodes->Bookmark();
        }
        form.cmbNode.Add_Item(Node_Name_of(type_name, number));
        form.lstSupervisedTypeID.Add_Item(nodes->Value(u"SuperviseID").To_Text());
        if (state.Is_Editing_Default_Node)
            break;
    }
    return wanted;
}

void Busyness_Rules::Make_Room_For_Default_Node() {
    const Integer shift = Arrange_For_Default_Node();
    toolkit::Rectangle place = Form().Place();
    place.Height -= shift;
    Form().Move(place);
}

// Removes the navigation bar and closes the gap that it leaves.
Integer Busyness_Rules::Arrange_For_Default_Node() {
    auto& form = Form();
    toolkit::Control* const bar[] = {&form.cmdFirst,          &form.cmdPrevious, &form.cmbNode,
                                     &form.lblRecordPosition, &form.cmdNext,     &form.cmdLast};
    for (toolkit::Control* control : bar)
        control->Set_Visible(false);
    const Integer former_top = automation::To_Integer(static_cast<double>(form.lblDescription.Top()));
    form.lblDescription.Set_Top(form.cmdFirst.Top());
    const Integer shift = automation::To_Integer(static_cast<double>(former_top - form.lblDescription.Top()));
    toolkit::Control* const below[] = {&form.txtDescription, &form.fraSupervised, &form.lblHookFlash,
                                       &form.cmbHookFlash,   &form.lblTransfer,   &form.txtTransfer,
                                       &form.lblDisconnect,  &form.txtDisconnect, &form.fra,
                                       &form.cmdOK,          &form.cmdCancel,     &form.cmdApply};
    for (toolkit::Control* control : below)
        control->Set_Top(control->Top() - shift);
    return shift;
}

void Busyness_Rules::Edit_Nth_Node(Integer index) {
    dialog::Trapped(*this, u"Edit_Nth_Node", Object_Index::Busyness_Rules, [&] {
        if (!Changes_Verified())
            return;
        const Integer target = Add(index, Integer{1});
        auto& nodes = state.Nodes_Recordset;
        while (state.Node_Position < target) {
            nodes->Move_Next();
            state.Node_Number = Number_Of(*nodes);
            state.Node_Position = Add(state.Node_Position, Integer{1});
        }
        while (state.Node_Position > target) {
            nodes->Move_Previous();
            state.Node_Number = Number_Of(*nodes);
            state.Node_Position = Subtract(state.Node_Position, Integer{1});
        }
        data::Reflect_The_Node_Into_The_Dialog(state, Form(), *this);
    });
}

bool Busyness_Rules::Changes_Verified() {
    return dialog::Trapped(*this, u"Changes_Verified", Object_Index::Busyness_Rules, false, [this] {
        auto& apply = Form().cmdApply;
        if (!apply.Enabled())
            return true;
        switch (Confirmation_MsgBox()) {
        case toolkit::answer::Save:
            apply.Set_Value(true);
            return true; // whether or not the save succeeded
        case toolkit::answer::Discard:
            apply.Set_Enabled(false);
            return true;
        default:
            return false;
        }
    });
}

Long Busyness_Rules::Confirmation_MsgBox() {
    return dialog::Trapped(*this, u"Confirmation_MsgBox", Object_Index::Busyness_Rules, Long{0}, [this] {
        const String title = Language_Text(Confirmation_Title);
        if (title.empty())
            return Long{-1};
        const String prompt = Language_Text(Save_Question);
        if (prompt.empty())
            return Long{-1};
        auto& form = Form();
        const bool was_busy = form.Mouse_Pointer() == toolkit::Pointer_Hourglass;
        form.Set_MousePointer(false, false);
        const Long answer = Show_Box(Variant(state.Language_ID), prompt, Question, Save_Buttons, title);
        form.Set_MousePointer(was_busy, false);
        if (answer == -1)
            Copy_Box_Error();
        return answer;
    });
}

void Busyness_Rules::Selected_Node_Not_Found() {
    // It reports itself as a procedure of the dialog.
    dialog::Trapped(*this, u"Selected_Node_Not_Found", Object_Index::dlgGUI, [this] {
        const String title = Language_Text(Information_Title);
        if (title.empty())
            return;
        const String message = Language_Text(Node_Not_Found);
        if (message.empty())
            return;
        const String name = Node_Name_of(Node_Type_Name_of(data::Style_Node_Type), state.Node_Number);
        const Long answer = Show_Box(Variant(state.Language_ID), dialog::With_Placeholder(message, name),
                                     Information, One_Button, title);
        if (answer == -1)
            Copy_Box_Error();
    });
}

String Busyness_Rules::Node_Name_of(String_View type_name, Integer node_number) {
    return dialog::Trapped(*this, u"Node_Name_of", Object_Index::Busyness_Rules, String(),
                           [&] { return String(type_name) + u" " + Decimal_Text(node_number); });
}

Long Busyness_Rules::Show_Box(const Variant& language, String_View text, Long kind, Long buttons,
                              String_View title) {
    Long answer = 0;
    data::Call(state.Message_Box_Component, &interfaces::Message_Box::Show_Box, language, Variant(text),
               Variant(kind), Variant(buttons), Variant(title), answer);
    return answer;
}

// The box failed: its error becomes the record, as it stands.
void Busyness_Rules::Copy_Box_Error() {
    const auto& box = state.Message_Box_Component;
    automation::Text text;
    data::Call(box, &interfaces::Message_Box::Box_Error_Location, text);
    state.Error_Location = text.View();
    data::Call(box, &interfaces::Message_Box::Box_Error_Code, state.Error_Code);
    data::Call(box, &interfaces::Message_Box::Box_Error_Description, text);
    state.Error_Description = text.View();
}

} // namespace component
