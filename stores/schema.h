// The tables of a store, and the version of their layout.
#pragma once

#include <array>

#include "database.h"

namespace stores {

constexpr int Schema_Version = 1;

// The detail records of the four supervised types that have one: one table each, alike but for the pair
// of busy columns.
struct Detail_Table {
    const char* Name;
    const char* First_Busy;
    const char* Second_Busy;
    automation::String_View First_Busy_Field;
    automation::String_View Second_Busy_Field;
};
inline constexpr Detail_Table Partial_Detail{"partial_detail", "busy_on", "busy_off", u"BusyOn", u"BusyOff"};
inline constexpr Detail_Table Full_Detail{"full_detail", "busy_on", "busy_off", u"BusyOn", u"BusyOff"};
inline constexpr Detail_Table DialContinue_Detail{"dialcontinue_detail", "busy_on", "busy_off", u"BusyOn",
                                                  u"BusyOff"};
inline constexpr Detail_Table Enhanced_Detail{"enhanced_detail", "busy1_on", "busy2_on", u"Busy1On",
                                              u"Busy2On"};
// The supervised types 1 to 4 in order.
inline constexpr std::array Detail_Tables{&Partial_Detail, &Full_Detail, &DialContinue_Detail,
                                          &Enhanced_Detail};

// The value columns of a detail record after the keys and supervise_id, in the order of the inserters'
// arguments.
std::string Detail_Columns(const Detail_Table& table);
// Takes the three keys, supervise_id and the eight values.
std::string Insert_Detail(const Detail_Table& table);

// Store_Error unless the database holds the tables of a store in a version that this program knows.
void Check_Schema(soci::session& session, const Location& location);

// Store_Error unless the database holds no table at all.
void Check_Empty(soci::session& session, const Location& location);

void Create_Tables(soci::session& session);

} // namespace stores
