// The run-time failure: source, number, description.
//
// Inside a module a failure travels as the exception Failure. Between modules nothing is thrown: an
// interface member returns a Status and leaves the failure in the calling thread's error object.
// Every function here is thread-safe; the error object belongs to the thread.
#pragma once

#include <exception>
#include <optional>
#include <utility>

#include "automation/text.h"

namespace automation {

// Result of an interface member: negative is failure.
using Status = std::int32_t;
constexpr Status Status_OK = 0;
constexpr Status Status_Unspecified = -2147467259;  // 0x80004005
constexpr Status Status_No_Interface = -2147467262; // 0x80004002

struct Failure : std::exception {
    explicit Failure(Long number, String description, String source = {})
        : Source(std::move(source)), Number(number), Description(std::move(description)) {}
    const char* what() const noexcept override { return "run-time failure"; }

    String Source; // empty: the language run time, that is, the module that catches it
    Long Number;
    String Description;
};

// Failures of the language run time that the editor meets.
namespace run_time {
constexpr Long Invalid_Argument = 5;
constexpr Long Overflow = 6;
constexpr Long Out_Of_Memory = 7;
constexpr Long Subscript_Out_Of_Range = 9;
constexpr Long Type_Mismatch = 13;
constexpr Long Bad_File_Number = 52;
constexpr Long File_Already_Open = 55;
constexpr Long Permission_Denied = 70;
constexpr Long Path_File_Access = 75;
constexpr Long Path_Not_Found = 76;
constexpr Long Object_Not_Set = 91;
constexpr Long Invalid_Use_Of_Null = 94;
constexpr Long Invalid_Property_Value = 380;
constexpr Long Invalid_Property_Index = 381;
constexpr Long Cannot_Create_Object = 429;
constexpr Long No_Such_Interface = 430;
constexpr Long Key_Taken = 457;
} // namespace run_time

// The platform's text of a run-time number.
String Description_Of(Long number);

[[noreturn]] void Raise(Long number);
[[noreturn]] void Raise_Missing_Resource(Long resource_id);

// The exception in flight, whatever it is, as a failure. Call it from a catch clause only.
Failure Current_Failure() noexcept;

// The error object of the calling thread. A status without an error object raises
// "Automation error" under the number of the status.
void Set_Error(Failure failure) noexcept;
std::optional<Failure> Take_Error() noexcept;

// Raises the failure behind a failing status; nothing for any other.
void Check(Status status);

// Runs the body of an interface member: what it throws becomes a status and the error object, under
// `source` unless the failure carries one of its own.
template <typename Body>
Status Guard(String_View source, Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
        return Status_OK;
    } catch (...) {
        Failure failure = Current_Failure();
        if (failure.Source.empty())
            failure.Source = source;
        const Status status = failure.Number < 0 ? failure.Number : Status_Unspecified;
        Set_Error(std::move(failure));
        return status;
    }
}

} // namespace automation
