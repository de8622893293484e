// The supervised types, their stores of detail records, and the fields of both records.
#pragma once

#include <array>

#include "automation/number.h"
#include "data/editor_state.h"

namespace data {

namespace field {
constexpr String_View Node_Number = u"NodeNumber";
constexpr String_View Description = u"NodeDescription";
constexpr String_View Supervise_ID = u"SuperviseID";
constexpr String_View Hookflash = u"Hookflash";
constexpr String_View Threshold_Type_ID = u"ThresholdTypeID";
constexpr String_View Transfer = u"Transfer";
constexpr String_View Disconnection = u"Disconnection";
constexpr String_View Retrieve = u"Retrieve";
} // namespace field

// What the product's components may deliver for an absent text; honoured for the label and the retrieve
// dial string only.
constexpr String_View Null_Marker = u"(null)";

constexpr Integer Blind = 0;
constexpr Integer Enhanced = 4;

// One supervised type with a detail record.
struct Detailed_Type {
    Integer Supervise_ID;
    toolkit::Option_Button dialog::dlgGUI::*Option;
    const String& (dialog::dlgGUI::*Busy_On_Caption)() const;
    const String& (dialog::dlgGUI::*Busy_Off_Caption)() const;
    String_View First_Busy_Field;
    String_View Second_Busy_Field;
    decltype(&interfaces::NODES::Get_Full_Detail) Get;
    decltype(&interfaces::DELNODES::Delete_Full_Detail) Delete;
    decltype(&interfaces::INSNODES::Insert_Full_Detail) Insert;
    String_View Loader; // the name that a failing load reports
};

// In the order of the identifiers; Enhanced is last. Its loader reports under the name of the Full one.
inline constexpr std::array Detailed_Types{
    Detailed_Type{1, &dialog::dlgGUI::optPartial, &dialog::dlgGUI::BusyOn_Caption,
                  &dialog::dlgGUI::BusyOff_Caption, u"BusyOn", u"BusyOff",
                  &interfaces::NODES::Get_Partial_Detail, &interfaces::DELNODES::Delete_Partial_Detail,
                  &interfaces::INSNODES::Insert_Partial_Detail, u"Load_Partial_Info"},
    Detailed_Type{2, &dialog::dlgGUI::optFull, &dialog::dlgGUI::BusyOn_Caption,
                  &dialog::dlgGUI::BusyOff_Caption, u"BusyOn", u"BusyOff",
                  &interfaces::NODES::Get_Full_Detail, &interfaces::DELNODES::Delete_Full_Detail,
                  &interfaces::INSNODES::Insert_Full_Detail, u"Load_Full_Info"},
    Detailed_Type{3, &dialog::dlgGUI::optDialContinue, &dialog::dlgGUI::BusyOn_Caption,
                  &dialog::dlgGUI::BusyOff_Caption, u"BusyOn", u"BusyOff",
                  &interfaces::NODES::Get_DialContinue_Detail,
                  &interfaces::DELNODES::Delete_DialContinue_Detail,
                  &interfaces::INSNODES::Insert_DialContinue_Detail, u"Load_DialContinue_Info"},
    Detailed_Type{4, &dialog::dlgGUI::optEnhanced, &dialog::dlgGUI::Busy1On_Caption,
                  &dialog::dlgGUI::Busy2On_Caption, u"Busy1On", u"Busy2On",
                  &interfaces::NODES::Get_Enhanced_Detail, &interfaces::DELNODES::Delete_Enhanced_Detail,
                  &interfaces::INSNODES::Insert_Enhanced_Detail, u"Load_Full_Info"},
};

// Null for Blind and for a value that is no supervised type.
constexpr const Detailed_Type* Detailed_Type_Of(Integer supervise_id) {
    for (const Detailed_Type& type : Detailed_Types)
        if (type.Supervise_ID == supervise_id)
            return &type;
    return nullptr;
}

// The three arguments that name a node.
struct Node_Key {
    explicit Node_Key(const Editor_State& state)
        : Config_ID(automation::Decimal_Text(state.Config_ID)),
          Partition_ID(automation::Decimal_Text(state.Partition_ID)),
          Node_Number(automation::Decimal_Text(state.Node_Number)) {}

    automation::Variant Config_ID;
    automation::Variant Partition_ID;
    automation::Variant Node_Number;
};

} // namespace data
