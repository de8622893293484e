// The tables of a store, and the version of their layout.
#pragma once

#include <array>

#include "connection.h"

namespace stores {

constexpr int Schema_Version = 3;

// The detail records of the four supervised types that have one: one table each, alike but for the pair
// of busy columns.
struct Detail_Table {
    const char* Type; // as the operations name it
    const char* Name;
    const char* First_Busy;
    const char* Second_Busy;
    automation::String_View First_Busy_Field;
    automation::String_View Second_Busy_Field;
};
inline constexpr Detail_Table Partial_Detail{"Partial",  "partial_detail", "busy_on",
                                             "busy_off", u"BusyOn",        u"BusyOff"};
inline constexpr Detail_Table Full_Detail{"Full",     "full_detail", "busy_on",
                                          "busy_off", u"BusyOn",     u"BusyOff"};
inline constexpr Detail_Table DialContinue_Detail{
    "DialContinue", "dialcontinue_detail", "busy_on", "busy_off", u"BusyOn", u"BusyOff"};
inline constexpr Detail_Table Enhanced_Detail{"Enhanced", "enhanced_detail", "busy1_on",
                                              "busy2_on", u"Busy1On",        u"Busy2On"};
// The supervised types 1 to 4 in order.
inline constexpr std::array Detail_Tables{&Partial_Detail, &Full_Detail, &DialContinue_Detail,
                                          &Enhanced_Detail};

// The value columns of a detail record behind supervise_id, in the order of the inserters' arguments.
std::vector<std::string> Detail_Columns(const Detail_Table& table);

// A kind of record that is kept for a node: its table, keys (configuration, partition and node first) and
// value columns.
struct Record_Kind {
    std::string Table;
    std::vector<std::string> Keys, Columns;
};
const Record_Kind& Node_Record();
const Record_Kind& Node_Entry();                             // its fourth key is the node's type
const Record_Kind& Detail_Record(const Detail_Table& table); // supervise_id is its first column
const std::vector<const Record_Kind*>& All_Kinds();

constexpr int Style_Node_Type = 5; // the product's number of the type of these nodes

// "a, b, c", each with the prefix.
std::string SQL_List(const std::vector<std::string>& columns, const std::string& prefix = "");
// As version 1 had it.
std::string SQL_Create(const Record_Kind& kind);
// Takes the keys and the values.
std::string SQL_Insert(const Record_Kind& kind);

// The version of the store in the database. Store_Error unless it holds the tables of one, in a version that
// this program knows.
int Version_Of_Store(Connection& connection);

// Brings a store, as the above has found it, up to Schema_Version in the caller's transaction, in which it
// comes first; of two programs that do so at once the second finds nothing left to do. Store_Error as above.
void Upgrade_Schema(Connection& connection);

// Store_Error unless the database holds no table at all.
void Check_Empty(Connection& connection);

// Without what notes changes: the sample data is none.
void Create_Tables(Connection& connection);
void Begin_History(Connection& connection);

} // namespace stores
