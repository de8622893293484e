// The editor's state: what one Busyness_Rules object knows about its job, and its connections to the product.
//
// It belongs to that object and to the thread that created it. The loader and the save work on it together
// with the dialog and the sink that records their failures.
#pragma once

#include "automation/collection.h"
#include "dialog/dlg_gui.h"
#include "interfaces/product_components.h"
#include "recordset/recordset.h"

namespace data {

using automation::Integer;
using automation::Long;
using automation::Reference;
using automation::String;
using automation::String_View;
using dialog::Style_Node_Type;

struct Editor_State {
    // The last recorded error; an empty description means none since Shown began.
    String Error_Location;
    Long Error_Code = 0;
    String Error_Description;

    Integer Config_ID = 0;
    Integer Partition_ID = 0;
    Integer Node_Number = 0; // the requested one until the first navigation step
    Integer Language_ID = 0;
    Long Language_Offset = 0; // string-table id of the language's first text
    bool Silent_Error = false;

    // Both keyed by the decimal text of the node type's identifier, filled and emptied in step.
    automation::Collection Node_Type_Names;
    automation::Collection Node_Type_Positions;

    Integer Node_Position = 0; // of the shown node in the node list, from 1
    Reference<interfaces::Message_Box> Message_Box_Component;
    bool Is_Editing_Default_Node = false;
    bool Is_SupervisedType_Blind = false;
    Reference<recordset::Recordset> Nodes_Recordset; // its current record is the shown node

    Reference<interfaces::SR> SR_Reader;
    Reference<interfaces::NODES> Nodes_Reader;
    Reference<interfaces::DETAIL> Detail_Reader;
    Reference<interfaces::CONFIG> Config_Reader;
    Reference<interfaces::DELNODES> Nodes_Deleter;
    Reference<interfaces::UDNODES> Nodes_Updater;
    Reference<interfaces::INSNODES> Nodes_Inserter;
};

// Calls a component: 91 when it is unset, the component's own error when it fails.
using automation::Call;

// The text of an answer, which is converted in place when it is not one yet.
String_View Answered_Text(automation::Variant& answer);

// A recordset over the XML that a reader answered. On a failure it reports "XMLStringToRecordset" and
// answers none, so that the caller's next use of it fails as well: two reports for one fault.
Reference<recordset::Recordset> XMLStringToRecordset(dialog::Error_Sink& errors, String_View xml);

// Reads through one operation of a component.
template <typename Interface, typename... Parameters, typename... Arguments>
Reference<recordset::Recordset> Read(dialog::Error_Sink& errors, const Reference<Interface>& component,
                                     automation::Status (Interface::*operation)(Parameters...),
                                     Arguments&&... arguments) {
    automation::Variant answer;
    Call(component, operation, std::forward<Arguments>(arguments)..., answer);
    return XMLStringToRecordset(errors, Answered_Text(answer));
}

// Lookups.
void Load_All_Threshold(Editor_State& state, dialog::dlgGUI& form, dialog::Error_Sink& errors);
void Obtain_All_Node_Type_Name(Editor_State& state, dialog::Error_Sink& errors);
// Empty when there is no such type; reports nothing.
String Node_Type_Name_of(const Editor_State& state, Integer node_type);

// Shows the current record of Nodes_Recordset; never moves it.
void Reflect_The_Node_Into_The_Dialog(Editor_State& state, dialog::dlgGUI& form, dialog::Error_Sink& errors);

// False when the label was refused; True after success and after an error, which the record tells apart.
bool Save_Changes(Editor_State& state, dialog::dlgGUI& form, dialog::Error_Sink& errors);

} // namespace data
