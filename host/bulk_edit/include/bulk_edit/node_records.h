// The records of a partition's STYLE nodes as the store holds them, and their JSON form.
//
// One JSON object is one node: "NodeNumber", "Change" (the change at which it was last written, 0 for none),
// the values of its record by the names that the product's recordsets use, and an object under the name of
// each supervised type that it has a detail record of. A null is null. A value that no document can carry has
// the escaped form that the store gives it. Texts are UTF-16, JSON is UTF-8. Belongs to the thread that
// opened the store.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "interfaces/store_records.h"

namespace host {

using automation::Integer;
using automation::Long;
using automation::String;
using automation::String_View;

using Stored = std::optional<String>; // nothing is null

// A value of a record: its name, the control of the dialog that edits it (none when it follows from others),
// and for a person what it is, and in which unit.
struct Value_Name {
    const char* Name;
    String_View Control;
    const char* Title = "";
    const char* Unit = "";
};

namespace node_value { // places in a node's own record
constexpr std::size_t Label = 0, Type = 1, Caption = 2, Threshold = 4, Transfer = 5, Disconnection = 6,
                      Entry_Label = 7, Entry_Changed = 8;
}
namespace detail_value {
constexpr std::size_t Type = 0, Retrieve = 1;
}

constexpr std::size_t Values_Of_A_Record = 9;
constexpr std::size_t Record_Kinds = interfaces::Last_Detail_Record + 1;
using Values = std::array<Stored, Values_Of_A_Record>;
std::span<const Value_Name, Values_Of_A_Record> Value_Names(std::size_t kind);
const char* Kind_Name(std::size_t kind);                    // "Partial"; "" for the node's own
const char* Type_Name(std::size_t type);                    // "Blind", "Partial"
std::string Full_Name(std::size_t kind, std::size_t index); // "Hookflash", "Full.RingOn"

struct Node {
    Long Number = 0;
    String Change = u"0";                                    // at which it was last written
    std::array<std::optional<Values>, Record_Kinds> Records; // by kind; the node's own is always there

    Values& Own() { return *Records[interfaces::Node_Record]; }
    const Values& Own() const { return *Records[interfaces::Node_Record]; }
    // 0 to 4; nothing when the stored text is no supervised type.
    std::optional<std::size_t> Type() const;

    friend bool operator==(const Node&, const Node&) = default;
};

using Nodes = std::map<Long, Node>;

// The work on one partition's records. Its failures are automation::Failure; what was not kept is undone.
class Partition_Work {
public:
    enum class Access { To_Read, To_Write };
    Partition_Work(Integer config, Integer partition, Access access);
    Nodes Read() const;
    // Makes the node's records what `after` holds.
    void Write(const Node& before, const Node& after) const;
    // The change that it was, as `store revert` takes it.
    std::string Keep();
    // Who made a change, and when.
    std::string Author_Of(const String& change) const;

private:
    automation::Reference<interfaces::Store_Records> records;
};

// Whether a value of a record that exists follows from the rest, or is the time of the last change.
bool Follows(const Node& node, std::size_t kind, std::size_t index);

// Without what follows.
std::string JSON_Of(const Node& node);

// What a line asks for.
struct Wanted_Record {
    bool Removed = false; // the line holds null in the record's place
    std::map<std::size_t, Stored> Given;
    std::set<std::size_t> Left_Empty; // in a spreadsheet
};
struct Wanted_Node {
    Long Number = 0;
    std::optional<String> Change;                 // at which the line was exported
    std::map<std::size_t, Wanted_Record> Records; // by kind
};

// Why a line is no node; says what to write instead.
struct Line_Error : std::runtime_error {
    explicit Line_Error(const std::string& message, std::size_t column = 0)
        : std::runtime_error(message), Column(column) {}
    const std::size_t Column; // counted from 1; 0 when it is the whole line's
};
Wanted_Node Parse_Node(const std::string& line); // Line_Error
// What stands in the place of a node's number and of its change, if anything does. Throw Line_Error.
Long Wanted_Number(const std::optional<std::string>& text);
std::optional<String> Wanted_Change(const std::optional<std::string>& text);

// For a person; what a terminal would not show as it is, is escaped.
std::string Shown(const Stored& value);

} // namespace host
