// The recordset library: "ADODB.Stream" and "ADODB.Recordset" over the persisted XML format.
//
// Both are created by programmatic identifier and belong to one thread. They are objects of the
// caller's own module and throw automation::Failure under their own name; everything but the stream fails as
// "ADODB.Recordset", its fields included. A recordset here is read-only: it walks rows and gives values.
#pragma once

#include "automation/create.h"
#include "automation/variant.h"

namespace recordset {

using automation::Long;
using automation::String;
using automation::String_View;
using automation::Variant;

constexpr String_View Stream_Program_Identity = u"ADODB.Stream";
constexpr String_View Recordset_Program_Identity = u"ADODB.Recordset";

// Failures of the library.
namespace number {
constexpr Long Wrong_Arguments = 3001;
constexpr Long No_Current_Record = 3021;
constexpr Long No_Such_Item = 3265;
constexpr Long Object_Closed = 3704;
constexpr Long Object_Open = 3705;
constexpr Long Unreadable = automation::Status_Unspecified;
} // namespace number

// An in-memory text stream of UTF-16.
class Stream : public automation::Unknown {
public:
    static constexpr automation::Identity Interface_Identity{
        0x6D1F2B84, 0x90C3, 0x4E57, {0xA1, 0x3E, 0x5C, 0x77, 0x20, 0xB9, 0x48, 0xD6}};

    virtual void Open() = 0;                       // empty; 3705 when open
    virtual void Close() = 0;                      // 3704 when closed, as every member below
    virtual void Write_Text(String_View text) = 0; // at the position, overwriting; no line separator
    // What Write_Text does to an empty stream, without a copy: the caller keeps the text as it is until the
    // stream is closed or gone. 3001 when the stream holds something.
    virtual void Borrow_Text(String_View text) = 0;
    virtual std::int64_t Position() const = 0;            // bytes from the start, two a code unit
    virtual void Set_Position(std::int64_t position) = 0; // 3001 outside 0 .. Size or on half a unit
    virtual std::int64_t Size() const = 0;                // bytes
    // The text from the position to the end; does not move the position.
    virtual String_View Rest() const = 0;

protected:
    ~Stream() = default;
};

enum class Cursor_Type : Long { Unspecified = -1, Forward_Only = 0, Keyset = 1, Dynamic = 2, Static = 3 };
enum class Lock_Type : Long {
    Unspecified = -1,
    Read_Only = 1,
    Pessimistic = 2,
    Optimistic = 3,
    Batch_Optimistic = 4
};

// Rows of a persisted recordset, with a current record. Before the first row it stands at the beginning of
// file, behind the last at the end of file; with no rows at both.
class Recordset : public automation::Unknown {
public:
    static constexpr automation::Identity Interface_Identity{
        0x2F8A6C10, 0x4B7D, 0x4D29, {0x8E, 0x05, 0xC4, 0x19, 0x63, 0xFA, 0x72, 0x0B}};

    // Reads the stream from its position; stands on the first row afterwards. 3705 when open, 3709 when the
    // stream is unset or closed, number::Unreadable when the text holds no readable recordset: the recordset
    // then stays closed.
    virtual void Open(const automation::Reference<Stream>& source,
                      Cursor_Type cursor = Cursor_Type::Unspecified,
                      Lock_Type lock = Lock_Type::Unspecified) = 0;
    // 3704 when closed, as every member below.
    virtual void Close() = 0;
    virtual bool Is_Open() const = 0; // never fails

    virtual Long Record_Count() const = 0;
    virtual bool At_Beginning() const = 0;
    virtual bool At_End() const = 0;
    virtual void Move_First() = 0;    // 3021 when there are no rows
    virtual void Move_Next() = 0;     // 3021 at the end of file
    virtual void Move_Previous() = 0; // 3021 at the beginning of file

    // Names the current record until the recordset is closed; 3021 when there is none.
    virtual Variant Bookmark() const = 0;
    virtual void Set_Bookmark(const Variant& bookmark) = 0; // 3001 when it names no record

    virtual Long Field_Count() const = 0;
    virtual String Field_Name(Long ordinal) const = 0; // 3265
    // The current record's field, by name without regard to case or by position from 0: 3265 when there is no
    // such field, then 3021 when there is no current record.
    virtual Variant Value(String_View field) const = 0;
    virtual Variant Value(Long ordinal) const = 0;

protected:
    ~Recordset() = default;
};

// Offers both classes to the process. Call it before anything reads a recordset; again does no harm.
void Offer_Classes();

} // namespace recordset
