// dlgGUI, the "Node Editor" dialog: its 44 controls, and the handlers behind them.
//
// One shared instance per thread, made when it is first asked for; an unloaded one is replaced by a fresh one
// at the next request. It holds a counted reference to the object that opened it until it closes. Geometry is
// in twips.
#pragma once

#include <functional>

#include "dialog/fields.h"
#include "dialog/owner.h"
#include "toolkit/form.h"

namespace dialog {

class dlgGUI final : public toolkit::Form {
public:
    dlgGUI();

    // The calling thread's instance.
    static std::shared_ptr<dlgGUI> Default_Instance();

    // The object that opens the dialog. Set it before anything else is done with the form.
    void Set_Busyness_Rules(automation::Reference<Owner> value) { owner = std::move(value); }

    // Captions of the busy fields; Enhanced shows the second pair.
    const String& BusyOn_Caption() const { return busy_on_caption; }
    const String& BusyOff_Caption() const { return busy_off_caption; }
    const String& Busy1On_Caption() const { return busy1_on_caption; }
    const String& Busy2On_Caption() const { return busy2_on_caption; }

    void Load_Language_Dependant_Parts();
    void Load_ComboBoxes();

    // Nested requests for the hourglass; a Reset always ends with the normal pointer.
    void Set_MousePointer(bool Busy, bool Reset);

private:
    const automation::Keep_Module module_in_use;
    using Label = toolkit::Label;
    using Combo_Box = toolkit::Combo_Box;
    using Text_Box = toolkit::Text_Box;
    using Option_Button = toolkit::Option_Button;
    using Command_Button = toolkit::Command_Button;
    static constexpr auto Editable = Combo_Box::Style::Editable;
    static constexpr auto List_Only = Combo_Box::Style::List_Only;
    static constexpr Label::Style Auto_Size{.Auto_Size = true};

public:
    // Id, name, place (left, top, width, height), tab index, caption, container.
    // clang-format off
    Combo_Box      cmbHookFlash{*this, {1, u"cmbHookFlash", {1920, 2160, 1455, 315}, 9}, Editable};
    toolkit::List_Box lstSupervisedTypeID{*this, {.Id = 2, .Name = u"lstSupervisedTypeID", .Place = {360, 7920, 3135, 1035}, .Tab_Index = 43, .Visible = false}};
    Text_Box       txtDisconnect{*this, {3, u"txtDisconnect", {1920, 2880, 1455, 285}, 13}};
    Text_Box       txtTransfer{*this, {4, u"txtTransfer", {1920, 2550, 1455, 285}, 11}};
    toolkit::Frame fra{*this, {5, u"fra", {120, 3240, 4455, 3615}, 14}};
    Combo_Box      cmbThreshold{*this, {6, u"cmbThreshold", {1800, 240, 1455, 315}, 16, {}, &fra}, List_Only};
    Combo_Box      cmbRingOff{*this, {7, u"cmbRingOff", {1800, 3120, 1455, 315}, 32, {}, &fra}, Editable};
    Combo_Box      cmbRingOn{*this, {8, u"cmbRingOn", {1800, 2760, 1455, 315}, 30, {}, &fra}, Editable};
    Combo_Box      cmbBusyOff{*this, {9, u"cmbBusyOff", {1800, 2400, 1455, 315}, 28, {}, &fra}, Editable};
    Combo_Box      cmbBusyOn{*this, {10, u"cmbBusyOn", {1800, 2040, 1455, 315}, 26, {}, &fra}, Editable};
    Combo_Box      cmbRingLimit{*this, {11, u"cmbRingLimit", {1800, 1680, 1455, 315}, 24, {}, &fra}, Editable};
    Combo_Box      cmbNumRetries{*this, {12, u"cmbNumRetries", {1800, 1320, 1455, 315}, 22, {}, &fra}, Editable};
    Combo_Box      cmbBusyRetry{*this, {13, u"cmbBusyRetry", {1800, 960, 1455, 315}, 20, {}, &fra}, Editable};
    Text_Box       txtRetrieve{*this, {14, u"txtRetrieve", {1800, 600, 1455, 285}, 18, {}, &fra}};
    Label          lblThreshold{*this, {15, u"lblThreshold", {240, 240, 765, 195}, 15, u"Threshold:", &fra}, Auto_Size};
    Label          lblRingOff{*this, {16, u"lblRingOff", {240, 3120, 1185, 195}, 31, u"Ring Off (msec):", &fra}, Auto_Size};
    Label          lblRingOn{*this, {17, u"lblRingOn", {240, 2760, 1155, 195}, 29, u"Ring On (msec):", &fra}, Auto_Size};
    Label          lblBusyOn{*this, {18, u"lblBusyOn", {240, 2040, 1185, 195}, 25, u"Busy On (msec):", &fra}, Auto_Size};
    Label          lblBusyOff{*this, {19, u"lblBusyOff", {240, 2400, 1215, 195}, 27, u"Busy Off (msec):", &fra}, Auto_Size};
    Label          lblRingLimit{*this, {20, u"lblRingLimit", {240, 1680, 735, 195}, 23, u"Ring Limit:", &fra}, Auto_Size};
    Label          lblNumRetries{*this, {21, u"lblNumRetries", {240, 1320, 930, 195}, 21, u"Num Retries:", &fra}, Auto_Size};
    Label          lblBusyRetry{*this, {22, u"lblBusyRetry", {240, 960, 1260, 195}, 19, u"Busy Retry (sec):", &fra}, Auto_Size};
    Label          lblRetrieve{*this, {23, u"lblRetrieve", {240, 600, 675, 195}, 17, u"Retrieve:", &fra}, Auto_Size};
    toolkit::Frame fraSupervised{*this, {24, u"fraSupervised", {120, 1080, 4455, 975}, 2, u"&Supervised", nullptr, true, {.Weight = 700}}};
    Option_Button  optEnhanced{*this, {25, u"optEnhanced", {2040, 600, 1455, 255}, 7, u"Enhanced", &fraSupervised}};
    Option_Button  optDialContinue{*this, {26, u"optDialContinue", {240, 600, 1455, 255}, 6, u"Dial Continue", &fraSupervised}};
    Option_Button  optPartial{*this, {27, u"optPartial", {2040, 240, 1215, 255}, 4, u"Partial", &fraSupervised}};
    Option_Button  optFull{*this, {28, u"optFull", {3480, 240, 735, 195}, 5, u"Full", &fraSupervised}};
    Option_Button  optBlind{*this, {29, u"optBlind", {240, 240, 1335, 255}, 3, u"Blind", &fraSupervised}};
    Command_Button cmdFirst{*this, {30, u"cmdFirst", {750, 120, 375, 315}, 37}, 1};
    Command_Button cmdLast{*this, {31, u"cmdLast", {3585, 120, 375, 315}, 42}, 4};
    Command_Button cmdNext{*this, {32, u"cmdNext", {3210, 120, 375, 315}, 41}, 3};
    Command_Button cmdPrevious{*this, {33, u"cmdPrevious", {1125, 120, 375, 315}, 38}, 2};
    Combo_Box      cmbNode{*this, {34, u"cmbNode", {1500, 120, 975, 315}, 39}, List_Only};
    Command_Button cmdOK{*this, {35, u"cmdOK", {600, 7080, 855, 375}, 33, u"&OK"}};
    Command_Button cmdCancel{*this, {36, u"cmdCancel", {1800, 7080, 855, 375}, 34, u"&Cancel"}};
    Command_Button cmdApply{*this, {37, u"cmdApply", {3000, 7080, 855, 372}, 35, u"&Apply"}};
    Command_Button cmdHelp{*this, {38, u"cmdHelp", {3600, 7080, 855, 375}, 36, u"&Help", nullptr, false}};
    Text_Box       txtDescription{*this, {39, u"txtDescription", {1200, 720, 3375, 315}, 1}};
    Label          lblDisconnect{*this, {40, u"lblDisconnect", {240, 2910, 840, 195}, 12, u"Disconnect:"}, Auto_Size};
    Label          lblTransfer{*this, {41, u"lblTransfer", {240, 2550, 675, 195}, 10, u"Transfer:"}, Auto_Size};
    Label          lblHookFlash{*this, {42, u"lblHookFlash", {240, 2160, 1350, 195}, 8, u"Hook Flask (msec):"}, Auto_Size};
    Label          lblRecordPosition{*this, {43, u"lblRecordPosition", {2475, 120, 735, 315}, 40, u"n/m"}, {.Line = Label::Border::Single, .Align = Label::Alignment::Center}};
    Label          lblDescription{*this, {44, u"lblDescription", {240, 735, 855, 195}, 0, u"&Description:"}, Auto_Size};
    // clang-format on

private:
    void On_Unload(bool& cancel) override { Form_Unload(cancel); }
    void On_Discarded() override;

    // The owner that a handler calls; a form that is gone has none for it.
    Owner& The_Owner() const;

    // The trap of every event handler. A failure is reported under the handler's name; then the dialog
    // closes, or stays when the handler only reports.
    enum class After_Failure { Close_Dialog, Only_Report };
    void Handle(String_View handler, const std::function<void()>& body,
                After_Failure then = After_Failure::Close_Dialog);
    void Close_After_Error();

    void Connect_Numeric_Fields();
    void Connect_Text_Fields();
    void Connect_Supervised_Types();
    void Connect_Commands();

    void Enable_Details() { Switch_Details(true); }
    void Disable_Details() { Switch_Details(false); }
    void Switch_Details(bool enabled);
    void optBlind_Click();
    enum class Apply_Enabled { Before_Starting_Values, After_Starting_Values };
    void Switch_To_Detailed_Type(const String& on_caption, const String& off_caption, Apply_Enabled order);
    void Write_Starting_Values();

    void cmbNode_Click();
    Integer Last_Entry() const; // of the node list; Overflow beyond 16 bits
    void Navigate(String_View handler, bool backward, const std::function<Integer(Integer index)>& target);
    void cmdApply_Click();
    void cmdOK_Click();
    void Form_Unload(bool& cancel);

    automation::Reference<Owner> owner;
    String busy_on_caption, busy_off_caption, busy1_on_caption, busy2_on_caption;
    Integer Busy_Depth = 0;
    String Last_Node_Text;
    Integer Last_Node_Index = 0;

    Numeric_Field hook_flash, busy_on, busy_off, ring_on, ring_off, busy_retry, num_retries, ring_limit;
    Dial_Field transfer{txtTransfer, cmdApply}, disconnect{txtDisconnect, cmdApply},
        retrieve{txtRetrieve, cmdApply};
    Label_Field description{txtDescription, cmdApply};
};

} // namespace dialog
