// Busyness_Rules: the object that a host sees, the editor state in it, and the procedures that the dialog
// calls back into. Everything runs on the thread that created the object; Shown blocks it for the whole modal
// dialog.
#pragma once

#include <memory>

#include "automation/apartment.h"
#include "data/editor_state.h"
#include "style_node/busyness_rules.h"

namespace component {

using automation::Integer;
using automation::Long;
using automation::Status;
using automation::String;
using automation::String_View;
using automation::Variant;
using dialog::Object_Index;
using style_node::Boolean;

class Busyness_Rules final : public automation::Object<style_node::_Busyness_Rules, dialog::Owner> {
public:
    Busyness_Rules() { Class_Initialize(); }

    // The public interface.
    Status Get_Member_Identities(const Automation_Name* names, std::uint32_t count,
                                 std::int32_t* identities) override;
    Status Invoke(std::int32_t member, std::uint16_t kind, const Automation_Arguments* arguments,
                  Automation_Variant* result, std::uint32_t* wrong_argument) override;
    Status Get_ErrLocation(automation::Text& Result) override;
    Status Get_ErrCode(Long& Result) override;
    Status Get_ErrDescription(automation::Text& Result) override;
    Status Get_SupervisedType_Blind(Boolean& Result) override;
    Status Put_SupervisedType_Blind(Boolean& Given_Is_SupervisedType_Blind) override;
    Status Get_Editing_Default_Node(Boolean& Result) override;
    Status Shown(Integer Config_ID, Integer Partition_ID, Integer Node_Number, Integer Language_ID,
                 Boolean Silent_Error, Boolean& Result) override;

    // What the dialog calls.
    String ErrDescription() const override { return state.Error_Description; }
    bool SupervisedType_Blind() const override { return state.Is_SupervisedType_Blind; }
    void Set_SupervisedType_Blind(bool value) override { state.Is_SupervisedType_Blind = value; }
    void Load_All_Threshold() override;
    String Node_Type_Name_of(Integer node_type) override;
    String Language_Text(Long Text_ID) override;
    void Edit_Nth_Node(Integer index) override;
    bool Changes_Verified() override;
    bool Save_Changes() override;
    void Handle_Error(String_View Source, String_View Procedure, Long Number, String_View Description,
                      Object_Index Object) override;

    // The bytes of one of the component's bitmaps; no procedure needs it, the buttons carry their pictures.
    std::basic_string_view<unsigned char> Language_Picture(Long bitmap_id);

private:
    // A public member's body, on the object's own thread only.
    template <typename Body>
    Status Serve(Body&& body) const {
        return automation::Guard(dialog::Component_Name, [&] {
            apartment.Require();
            body();
        });
    }

    ~Busyness_Rules() override { Class_Terminate(); }
    // So that a failure can be recorded without memory.
    void Reserve_Error_Record();
    void Class_Initialize();
    void Class_Terminate();

    bool Run_Job(Integer config_id, Integer partition_id, Integer node_number, Integer language_id,
                 bool silent_error);
    void Load_And_Show(dialog::dlgGUI& form);
    // The dialog of the running job; ends the procedures on the stack when it has gone.
    dialog::dlgGUI& Form() const;

    bool Node_Editor_Populated();
    Variant List_Nodes(); // the bookmark of the wanted node, or nothing
    void Make_Room_For_Default_Node();
    Integer Arrange_For_Default_Node();
    void Selected_Node_Not_Found();
    Long Confirmation_MsgBox();
    String Node_Name_of(String_View type_name, Integer node_number);
    Long Show_Box(const Variant& language, String_View text, Long kind, Long buttons, String_View title);
    void Copy_Box_Error();

    void Report_Error(String_View Location, Long Code, String_View Description);
    void Report_Error_In_Flight() noexcept;
    void Show_Internal_Error();
    void Write_User_Log();

    const automation::Apartment apartment;
    String not_created; // why one of the product's components was not; empty when all were
    data::Editor_State state;
    std::weak_ptr<dialog::dlgGUI> shown_form;
};

} // namespace component
