#include "automation/failure.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>

#include "automation/number.h"
#include "automation/text.h"

namespace automation {

namespace {

struct Run_Time_Text {
    Long Number;
    String_View Description;
};

constexpr std::array Run_Time_Texts{
    Run_Time_Text{run_time::Invalid_Argument, u"Invalid procedure call or argument"},
    Run_Time_Text{run_time::Overflow, u"Overflow"},
    Run_Time_Text{run_time::Out_Of_Memory, Out_Of_Memory_Text},
    Run_Time_Text{run_time::Subscript_Out_Of_Range, u"Subscript out of range"},
    Run_Time_Text{run_time::Type_Mismatch, u"Type mismatch"},
    Run_Time_Text{run_time::Bad_File_Number, u"Bad file name or number"},
    Run_Time_Text{run_time::File_Already_Open, u"File already open"},
    Run_Time_Text{run_time::Permission_Denied, u"Permission denied"},
    Run_Time_Text{run_time::Path_File_Access, u"Path/File access error"},
    Run_Time_Text{run_time::Path_Not_Found, u"Path not found"},
    Run_Time_Text{run_time::Object_Not_Set, u"Object variable or With block variable not set"},
    Run_Time_Text{run_time::Invalid_Use_Of_Null, u"Invalid use of Null"},
    Run_Time_Text{run_time::Invalid_Property_Value, u"Invalid property value"},
    Run_Time_Text{run_time::Invalid_Property_Index, u"Invalid property array index"},
    Run_Time_Text{run_time::Cannot_Create_Object, u"ActiveX component can't create object"},
    Run_Time_Text{run_time::No_Such_Interface,
                  u"Class does not support Automation or does not support expected interface"},
    Run_Time_Text{run_time::No_Such_Member, u"Object doesn't support this property or method"},
    Run_Time_Text{run_time::No_Such_Named_Argument, u"Named argument not found"},
    Run_Time_Text{run_time::Argument_Not_Optional, u"Argument not optional"},
    Run_Time_Text{run_time::Wrong_Argument_Count,
                  u"Wrong number of arguments or invalid property assignment"},
    Run_Time_Text{run_time::Key_Taken, u"This key is already associated with an element of this collection"},
};

// The calling thread's error object. Its texts go with the thread.
struct Thread_Error {
    Automation_Error Error{};
    bool Is_Set = false;

    Automation_Error Take() {
        Is_Set = false;
        return std::exchange(Error, {});
    }
    void Clear() {
        const Automation_Error old = Take();
        for (Automation_Block* text : {old.Source, old.Description, old.Reason})
            Automation_Free(text);
    }
    ~Thread_Error() { Clear(); }
};
thread_local Thread_Error thread_error;

Automation_Block* New_Text(String_View text) {
    return Automation_New_Text(text.data(), static_cast<std::uint32_t>(text.size()));
}

} // namespace

void Raise_Missing_Resource(Long resource_id) {
    throw Failure(run_time::Missing_Resource,
                  u"Resource with identifier '" + Decimal_Text(resource_id) + u"' not found");
}

} // namespace automation

using namespace automation;

void Automation_Set_Error(Automation_Error* error) noexcept {
    thread_error.Clear();
    thread_error.Error = std::exchange(*error, {});
    thread_error.Is_Set = true;
}

std::int32_t Automation_Take_Error(Automation_Error* error) noexcept {
    const bool was_set = thread_error.Is_Set;
    *error = thread_error.Take();
    return was_set ? 1 : 0;
}

std::uint64_t Automation_This_Thread() noexcept {
    static std::atomic<std::uint64_t> last{0};
    thread_local const std::uint64_t number = ++last;
    return number;
}

Automation_Block* Automation_Describe(std::int32_t number) noexcept {
    const auto* found = std::find_if(Run_Time_Texts.begin(), Run_Time_Texts.end(),
                                     [number](const auto& text) { return text.Number == number; });
    return New_Text(found == Run_Time_Texts.end() ? u"Application-defined or object-defined error"
                                                  : found->Description);
}

Automation_Block* Automation_New_Text_UTF8(const char* utf8) noexcept {
    try {
        return New_Text(From_UTF8_Replacing(utf8));
    } catch (...) {
        return nullptr;
    }
}

std::uint32_t Automation_To_UTF8(const Automation_Block* text, char* buffer, std::uint32_t size) noexcept {
    try {
        const std::string utf8 = To_UTF8(
            text ? String_View(reinterpret_cast<const char16_t*>(text + 1), text->Length) : String_View());
        if (size > 0) {
            const std::size_t kept = std::min<std::size_t>(utf8.size(), size - 1);
            std::memcpy(buffer, utf8.data(), kept);
            buffer[kept] = '\0';
        }
        return static_cast<std::uint32_t>(utf8.size());
    } catch (...) {
        if (size > 0)
            buffer[0] = '\0';
        return 0;
    }
}
