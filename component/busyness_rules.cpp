#include "busyness_rules.h"

#include "automation/create.h"
#include "automation/number.h"

namespace component {

using style_node::False;
using style_node::True;

namespace {

constexpr Integer Texts_Per_Language = 59;

Boolean To_Boolean(bool value) {
    return value ? True : False;
}

} // namespace

void Busyness_Rules::Class_Initialize() {
    Reserve_Error_Record();
    dialog::Trapped(*this, u"Class_Initialize", Object_Index::Busyness_Rules, [this] {
        auto create = [this](auto& member) {
            using Interface = std::remove_reference_t<decltype(*member)>;
            try {
                member = automation::Create_Bound<Interface>(Interface::Program_Identity);
            } catch (const automation::Failure& failure) {
                not_created = failure.Reason;
                throw;
            }
        };
        create(state.Message_Box_Component);
        create(state.SR_Reader);
        create(state.Nodes_Reader);
        create(state.Detail_Reader);
        create(state.Config_Reader);
        create(state.Nodes_Updater);
        create(state.Nodes_Deleter);
        create(state.Nodes_Inserter);
    });
}

void Busyness_Rules::Class_Terminate() {
    try {
        while (state.Node_Type_Names.Count() > 0) {
            state.Node_Type_Names.Remove(1);
            state.Node_Type_Positions.Remove(1);
        }
        state.Message_Box_Component = nullptr;
        state.SR_Reader = nullptr;
        state.Nodes_Reader = nullptr;
        state.Detail_Reader = nullptr;
        state.Config_Reader = nullptr;
        state.Nodes_Updater = nullptr;
        state.Nodes_Deleter = nullptr;
        state.Nodes_Inserter = nullptr;
    } catch (...) {
        // What is left is released with the members, silently.
    }
}

Status Busyness_Rules::Get_ErrLocation(automation::Text& Result) {
    return Serve([&] { Result = automation::Text(state.Error_Location); });
}

Status Busyness_Rules::Get_ErrCode(Long& Result) {
    return Serve([&] { Result = state.Error_Code; });
}

Status Busyness_Rules::Get_ErrDescription(automation::Text& Result) {
    return Serve([&] { Result = automation::Text(state.Error_Description); });
}

Status Busyness_Rules::Get_SupervisedType_Blind(Boolean& Result) {
    return Serve([&] { Result = To_Boolean(state.Is_SupervisedType_Blind); });
}

Status Busyness_Rules::Put_SupervisedType_Blind(Boolean& Given_Is_SupervisedType_Blind) {
    return Serve([&] { state.Is_SupervisedType_Blind = Given_Is_SupervisedType_Blind != False; });
}

Status Busyness_Rules::Get_Editing_Default_Node(Boolean& Result) {
    return Serve([&] { Result = To_Boolean(state.Is_Editing_Default_Node); });
}

Status Busyness_Rules::Shown(Integer Config_ID, Integer Partition_ID, Integer Node_Number,
                             Integer Language_ID, Boolean Silent_Error, Boolean& Result) {
    Result = False;
    return Serve([&] {
        // The dialog drops its reference when it closes, maybe the last one while this call is on the stack.
        const auto keep = automation::Reference<Busyness_Rules>::To(*this);
        Result =
            To_Boolean(Run_Job(Config_ID, Partition_ID, Node_Number, Language_ID, Silent_Error != False));
        // The record has no place for the reason.
        if (Result == False && !not_created.empty())
            automation::Set_Error(automation::Failure(state.Error_Code, state.Error_Description,
                                                      state.Error_Location, not_created));
    });
}

bool Busyness_Rules::Run_Job(Integer config_id, Integer partition_id, Integer node_number,
                             Integer language_id, bool silent_error) {
    return dialog::Trapped(*this, u"Shown", Object_Index::Busyness_Rules, false, [&] {
        state.Error_Location.clear();
        state.Error_Description.clear();
        state.Error_Code = 0;
        const auto form = dialog::dlgGUI::Default_Instance();
        shown_form = form;
        form->Set_Busyness_Rules(automation::Reference<dialog::Owner>::To(*this));
        form->Load();
        form->Set_MousePointer(true, false);
        state.Config_ID = config_id;
        state.Partition_ID = partition_id;
        state.Node_Number = node_number;
        state.Is_Editing_Default_Node = node_number == 0;
        state.Language_ID = language_id;
        state.Language_Offset =
            automation::Multiply(automation::Subtract(language_id, Integer{1}), Texts_Per_Language);
        state.Silent_Error = silent_error;
        data::Obtain_All_Node_Type_Name(state, *this);
        if (!state.Error_Description.empty())
            return false; // the hourglass stays on and the dialog stays loaded
        try {
            Load_And_Show(*form);
        } catch (const toolkit::Form_Gone&) {
            // A handler closed the dialog while the first node was being shown.
        }
        form->Set_MousePointer(false, false);
        return state.Error_Description.empty();
    });
}

void Busyness_Rules::Load_And_Show(dialog::dlgGUI& form) {
    form.cmdApply.Set_Enabled(false);
    form.Load_Language_Dependant_Parts();
    if (!ErrDescription().empty())
        return;
    form.Load_ComboBoxes();
    if (!ErrDescription().empty())
        return;
    if (!Node_Editor_Populated())
        return form.Unload();
    form.Set_MousePointer(false, false);
    form.Show_Modal();
}

dialog::dlgGUI& Busyness_Rules::Form() const {
    const auto form = shown_form.lock();
    if (!form || form->Is_Gone())
        throw toolkit::Form_Gone{};
    return *form;
}

void Busyness_Rules::Load_All_Threshold() {
    data::Load_All_Threshold(state, Form(), *this);
}

String Busyness_Rules::Node_Type_Name_of(Integer node_type) {
    return data::Node_Type_Name_of(state, node_type);
}

bool Busyness_Rules::Save_Changes() {
    return data::Save_Changes(state, Form(), *this);
}

} // namespace component
