// The product's components as far as the editor uses them: seven data components, the message box and
// the label checker.
//
// Every member returns an automation status; a failing one leaves source, number and description in the
// thread's error object. Every argument of a data component is a variant that holds a text: identifiers as
// decimal text, dialog values as the controls hold them. Readers answer with a text variant, the XML of a
// persisted recordset. Calls are synchronous and come on the thread that created the component.
#pragma once

#include "automation/variant.h"

namespace interfaces {

// Reads the product's lookup lists.
class SR : public automation::Unknown {
public:
    static constexpr automation::String_View Program_Identity = u"ZEBdb.SR";
    static constexpr automation::Identity Interface_Identity{
        0x3CEAAF30, 0x8142, 0x48EA, {0x91, 0xD9, 0x30, 0x80, 0xF9, 0xB4, 0x39, 0xFC}};

    virtual automation::Status Get_All_Node_Types(automation::Variant& Result) = 0;
    virtual automation::Status Get_All_Threshold_Types(automation::Variant& Result) = 0;

protected:
    ~SR() = default;
};

// Reads node records and their detail records.
class NODES : public automation::Unknown {
public:
    static constexpr automation::String_View Program_Identity = u"ZEBdb.NODES";
    static constexpr automation::Identity Interface_Identity{
        0x9DFB369B, 0xAB13, 0x4FAE, {0xA2, 0x76, 0x55, 0xDA, 0xA0, 0x5F, 0x11, 0x19}};

    virtual automation::Status Get_Full_Detail(const automation::Variant& Config_ID,
                                               const automation::Variant& Partition_ID,
                                               const automation::Variant& Node_Number,
                                               automation::Variant& Result) = 0;
    virtual automation::Status Get_Partial_Detail(const automation::Variant& Config_ID,
                                                  const automation::Variant& Partition_ID,
                                                  const automation::Variant& Node_Number,
                                                  automation::Variant& Result) = 0;
    virtual automation::Status Get_Enhanced_Detail(const automation::Variant& Config_ID,
                                                   const automation::Variant& Partition_ID,
                                                   const automation::Variant& Node_Number,
                                                   automation::Variant& Result) = 0;
    virtual automation::Status Get_DialContinue_Detail(const automation::Variant& Config_ID,
                                                       const automation::Variant& Partition_ID,
                                                       const automation::Variant& Node_Number,
                                                       automation::Variant& Result) = 0;
    virtual automation::Status Get_Style_Nodes(const automation::Variant& Config_ID,
                                               const automation::Variant& Partition_ID,
                                               automation::Variant& Result) = 0;

protected:
    ~NODES() = default;
};

// Created and released with the others, never called.
class DETAIL : public automation::Unknown {
public:
    static constexpr automation::String_View Program_Identity = u"ZEBdb.DETAIL";
    static constexpr automation::Identity Interface_Identity{
        0x6301BBFC, 0xA0C5, 0x454E, {0x8F, 0xF9, 0xBB, 0x51, 0x09, 0x44, 0xFE, 0x0C}};

protected:
    ~DETAIL() = default;
};

// Reads the configuration record.
class CONFIG : public automation::Unknown {
public:
    static constexpr automation::String_View Program_Identity = u"ZEBdb.CONFIG";
    static constexpr automation::Identity Interface_Identity{
        0x6FCED11D, 0x2BD8, 0x41E6, {0x84, 0x7A, 0x83, 0x87, 0xCD, 0xDE, 0x8D, 0x51}};

    virtual automation::Status Get_Configuration_Info(automation::Variant& Result) = 0;

protected:
    ~CONFIG() = default;
};

// Updates a node record and the node's entry in the general node list.
class UDNODES : public automation::Unknown {
public:
    static constexpr automation::String_View Program_Identity = u"ZEBud.UDNODES";
    static constexpr automation::Identity Interface_Identity{
        0x3A124C64, 0x7E02, 0x4F05, {0xB7, 0xC1, 0xDC, 0xE2, 0x7F, 0x76, 0x95, 0xF5}};

    virtual automation::Status
    Update_Style_Node(const automation::Variant& Config_ID, const automation::Variant& Partition_ID,
                      const automation::Variant& Node_Number, const automation::Variant& Hookflash,
                      const automation::Variant& Threshold_Type_ID, const automation::Variant& Transfer,
                      const automation::Variant& Disconnection, const automation::Variant& Supervise_Caption,
                      const automation::Variant& Supervise_ID, const automation::Variant& Label) = 0;
    virtual automation::Status
    Update_Node_Entry(const automation::Variant& Label, const automation::Variant& Changed,
                      const automation::Variant& Config_ID, const automation::Variant& Partition_ID,
                      const automation::Variant& Node_Type_ID, const automation::Variant& Node_Number) = 0;

protected:
    ~UDNODES() = default;
};

// Deletes a node's detail record of one supervised type.
class DELNODES : public automation::Unknown {
public:
    static constexpr automation::String_View Program_Identity = u"ZEBdel.DELNODES";
    static constexpr automation::Identity Interface_Identity{
        0x66080F17, 0x4C96, 0x48E2, {0x9C, 0xBD, 0x0B, 0xA3, 0xA1, 0xA6, 0xBC, 0xDE}};

    virtual automation::Status Delete_Full_Detail(const automation::Variant& Config_ID,
                                                  const automation::Variant& Partition_ID,
                                                  const automation::Variant& Node_Number) = 0;
    virtual automation::Status Delete_Partial_Detail(const automation::Variant& Config_ID,
                                                     const automation::Variant& Partition_ID,
                                                     const automation::Variant& Node_Number) = 0;
    virtual automation::Status Delete_Enhanced_Detail(const automation::Variant& Config_ID,
                                                      const automation::Variant& Partition_ID,
                                                      const automation::Variant& Node_Number) = 0;
    virtual automation::Status Delete_DialContinue_Detail(const automation::Variant& Config_ID,
                                                          const automation::Variant& Partition_ID,
                                                          const automation::Variant& Node_Number) = 0;

protected:
    ~DELNODES() = default;
};

// Inserts a node's detail record of one supervised type.
class INSNODES : public automation::Unknown {
public:
    static constexpr automation::String_View Program_Identity = u"ZEBins.INSNODES";
    static constexpr automation::Identity Interface_Identity{
        0xB120A366, 0xF0BB, 0x49CF, {0x82, 0xF2, 0xDC, 0x05, 0x87, 0x3F, 0x9B, 0xD0}};

    virtual automation::Status Insert_DialContinue_Detail(
        const automation::Variant& Config_ID, const automation::Variant& Partition_ID,
        const automation::Variant& Node_Number, const automation::Variant& Supervise_ID,
        const automation::Variant& Retrieve, const automation::Variant& Busy_Retry,
        const automation::Variant& Number_Retries, const automation::Variant& Ring_Limit,
        const automation::Variant& Busy_On, const automation::Variant& Busy_Off,
        const automation::Variant& Ring_On, const automation::Variant& Ring_Off) = 0;
    virtual automation::Status
    Insert_Enhanced_Detail(const automation::Variant& Config_ID, const automation::Variant& Partition_ID,
                           const automation::Variant& Node_Number, const automation::Variant& Supervise_ID,
                           const automation::Variant& Retrieve, const automation::Variant& Busy_Retry,
                           const automation::Variant& Number_Retries, const automation::Variant& Ring_Limit,
                           const automation::Variant& Busy_On, const automation::Variant& Busy_Off,
                           const automation::Variant& Ring_On, const automation::Variant& Ring_Off) = 0;
    virtual automation::Status
    Insert_Full_Detail(const automation::Variant& Config_ID, const automation::Variant& Partition_ID,
                       const automation::Variant& Node_Number, const automation::Variant& Supervise_ID,
                       const automation::Variant& Retrieve, const automation::Variant& Busy_Retry,
                       const automation::Variant& Number_Retries, const automation::Variant& Ring_Limit,
                       const automation::Variant& Busy_On, const automation::Variant& Busy_Off,
                       const automation::Variant& Ring_On, const automation::Variant& Ring_Off) = 0;
    virtual automation::Status
    Insert_Partial_Detail(const automation::Variant& Config_ID, const automation::Variant& Partition_ID,
                          const automation::Variant& Node_Number, const automation::Variant& Supervise_ID,
                          const automation::Variant& Retrieve, const automation::Variant& Busy_Retry,
                          const automation::Variant& Number_Retries, const automation::Variant& Ring_Limit,
                          const automation::Variant& Busy_On, const automation::Variant& Busy_Off,
                          const automation::Variant& Ring_On, const automation::Variant& Ring_Off) = 0;

protected:
    ~INSNODES() = default;
};

// The product's message box. Kind: 1 confirmation question, 2 information, 3 error. Buttons: 1 a single
// acknowledging button, 3 the three answers of the save question. The answer is -1 when the box could not be
// shown; the three properties then say why.
class Message_Box : public automation::Unknown {
public:
    static constexpr automation::String_View Program_Identity = u"KOR_MsgBox.Busyness_Rules";
    static constexpr automation::Identity Interface_Identity{
        0x78B7D0AC, 0x8477, 0x4CE0, {0x8E, 0x4C, 0xDA, 0x11, 0xB4, 0x3C, 0x58, 0x9B}};

    virtual automation::Status Box_Error_Location(automation::Variant& Result) = 0;
    virtual automation::Status Box_Error_Code(automation::Long& Result) = 0;
    virtual automation::Status Box_Error_Description(automation::Variant& Result) = 0;
    virtual automation::Status Show_Box(const automation::Variant& Language, const automation::Variant& Text,
                                        const automation::Variant& Kind, const automation::Variant& Buttons,
                                        const automation::Variant& Title, automation::Long& Answer) = 0;

protected:
    ~Message_Box() = default;
};

// The product's rule for labels. The editor creates it by class identity, once for each save.
class Label_Checker : public automation::Unknown {
public:
    static constexpr automation::String_View Program_Identity = u"LabelChecker";
    static constexpr automation::Identity Class_Identity{
        0x2330FCF1, 0x562A, 0x44B8, {0x88, 0x66, 0x8D, 0x77, 0xE8, 0x27, 0x06, 0x2C}};
    static constexpr automation::Identity Interface_Identity{
        0xC1ACC990, 0x6424, 0x450A, {0xA3, 0x6B, 0xF9, 0xB3, 0xDD, 0xCB, 0x36, 0x9D}};

    virtual automation::Status Is_Label_Allowed(const automation::Variant& Label, bool& Allowed) = 0;
    virtual automation::Status Prepare_Label(const automation::Variant& Label,
                                             automation::Variant& Result) = 0;

protected:
    ~Label_Checker() = default;
};

} // namespace interfaces
