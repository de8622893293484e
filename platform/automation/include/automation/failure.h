// The run-time failure: source, number, description.
//
// Inside a module a failure travels as the exception Failure. Between modules nothing is thrown: an
// interface member returns a Status and leaves the failure in the calling thread's error object.
// Everything here is thread-safe; the error object belongs to the thread.
#pragma once

#include <exception>
#include <new>
#include <optional>
#include <utility>

#include "automation/abi.h"
#include "automation/text_types.h"

namespace automation {

// Result of an interface member: negative is failure.
using Status = Automation_Status;
constexpr Status Status_OK = AUTOMATION_OK;
constexpr Status Status_Unspecified = AUTOMATION_UNSPECIFIED;
constexpr Status Status_No_Interface = AUTOMATION_NO_INTERFACE;

struct Failure : std::exception {
    explicit Failure(Long number, String description, String source = {}, String reason = {})
        : Source(std::move(source)), Number(number), Description(std::move(description)),
          Reason(std::move(reason)) {}
    const char* what() const noexcept override { return "run-time failure"; }

    String Source; // empty: the language run time, that is, the module that catches it
    Long Number;
    String Description;
    String Reason; // for a person: what the description leaves open; mostly empty
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
constexpr Long Missing_Resource = 326;
constexpr Long Invalid_Property_Value = 380;
constexpr Long Invalid_Property_Index = 381;
constexpr Long Cannot_Create_Object = 429;
constexpr Long No_Such_Interface = 430;
constexpr Long No_Such_Member = 438;
constexpr Long No_Such_Named_Argument = 448;
constexpr Long Argument_Not_Optional = 449;
constexpr Long Wrong_Argument_Count = 450;
constexpr Long Key_Taken = 457;
} // namespace run_time

constexpr String_View Out_Of_Memory_Text = u"Out of memory";

// A counted text that crosses a module boundary: one word, null for the empty text.
class Text {
public:
    Text() noexcept = default;
    explicit Text(String_View text)
        : block(Automation_New_Text(text.data(), static_cast<std::uint32_t>(text.size()))) {
        if (!block && !text.empty())
            throw std::bad_alloc();
    }
    Text(Text&& other) noexcept : block(std::exchange(other.block, nullptr)) {}
    Text& operator=(Text other) noexcept {
        std::swap(block, other.block);
        return *this;
    }
    ~Text() { Automation_Free(block); }

    static Text Adopt(Automation_Block* block) noexcept {
        Text text;
        text.block = block;
        return text;
    }
    Automation_Block* Detach() noexcept { return std::exchange(block, nullptr); }

    String_View View() const {
        return block ? String_View(reinterpret_cast<const char16_t*>(block + 1), block->Length)
                     : String_View();
    }

private:
    Automation_Block* block = nullptr;
};
static_assert(sizeof(Text) == sizeof(Automation_Block*));

// The platform's text of a run-time number.
inline String Description_Of(Long number) {
    return String(Text::Adopt(Automation_Describe(number)).View());
}

[[noreturn]] inline void Raise(Long number) {
    throw Failure(number, Description_Of(number));
}

// The exception in flight, whatever it is, as a failure. Call it from a catch clause only.
inline Failure Current_Failure() {
    try {
        throw;
    } catch (const Failure& failure) {
        return failure;
    } catch (const std::bad_alloc&) {
        return Failure(run_time::Out_Of_Memory, String(Out_Of_Memory_Text));
    } catch (const std::exception& error) {
        return Failure(Status_Unspecified,
                       String(Text::Adopt(Automation_New_Text_UTF8(error.what())).View()));
    } catch (...) {
        return Failure(Status_Unspecified, u"Unspecified error");
    }
}

// The status that stands for a failure's number between modules.
constexpr Status Status_Of(Long number) {
    if (number < 0)
        return number;
    return number > 0 && number < 65536 ? AUTOMATION_RUN_TIME(number) : Status_Unspecified;
}

// Puts a failure into the calling thread's error object. A status without an error object raises its run-time
// failure, or "Automation error" under the number of the status.
inline void Set_Error(const Failure& failure) noexcept {
    auto block = [](String_View text) {
        return Automation_New_Text(text.data(), static_cast<std::uint32_t>(text.size()));
    };
    Automation_Error error{block(failure.Source), block(failure.Description), block(failure.Reason),
                           failure.Number};
    Automation_Set_Error(&error);
}

inline std::optional<Failure> Take_Error() {
    Automation_Error error;
    if (!Automation_Take_Error(&error))
        return std::nullopt;
    const Text source = Text::Adopt(error.Source);
    const Text description = Text::Adopt(error.Description);
    const Text reason = Text::Adopt(error.Reason);
    return Failure(error.Number, String(description.View()), String(source.View()), String(reason.View()));
}

// Empties the calling thread's error object.
inline void Drop_Error() noexcept {
    Automation_Error old;
    Automation_Take_Error(&old);
    for (Automation_Block* text : {old.Source, old.Description, old.Reason})
        Automation_Free(text);
}

// Raises the failure behind a failing status; nothing for any other.
inline void Check(Status status) {
    if (status >= 0)
        return;
    auto error = Take_Error();
    if (!error && AUTOMATION_IS_RUN_TIME(status))
        Raise(AUTOMATION_RUN_TIME_NUMBER(status));
    if (!error)
        throw Failure(status, u"Automation error");
    if (error->Number == 0)
        error->Number = AUTOMATION_IS_RUN_TIME(status) ? AUTOMATION_RUN_TIME_NUMBER(status) : status;
    throw std::move(*error);
}

// Calls an interface member, of an object that may lie in another module, and raises its failure. What an
// earlier call left in the error object does not speak for this one.
template <typename Object, typename Interface, typename... Parameters, typename... Arguments>
void Call(Object&& object, Status (Interface::*member)(Parameters...), Arguments&&... arguments) {
    Interface& target = *object;
    Drop_Error();
    Check((target.*member)(std::forward<Arguments>(arguments)...));
}

// Runs the body of an interface member: what it throws becomes a status and the error object, under
// `source` unless the failure carries one of its own.
template <typename Body>
Status Guard(String_View source, Body&& body) noexcept {
    try {
        try {
            std::forward<Body>(body)();
            return Status_OK;
        } catch (...) {
            Failure failure = Current_Failure();
            if (failure.Source.empty())
                failure.Source = source;
            Set_Error(failure);
            return Status_Of(failure.Number);
        }
    } catch (...) { // not even the failure could be kept
        return Status_Of(run_time::Out_Of_Memory);
    }
}

} // namespace automation
