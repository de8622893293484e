#include "automation/failure.h"

#include <algorithm>
#include <array>
#include <new>

#include "automation/number.h"

namespace automation {

namespace {

struct Run_Time_Text {
    Long Number;
    String_View Description;
};

constexpr std::array Run_Time_Texts{
    Run_Time_Text{run_time::Invalid_Argument, u"Invalid procedure call or argument"},
    Run_Time_Text{run_time::Overflow, u"Overflow"},
    Run_Time_Text{run_time::Out_Of_Memory, u"Out of memory"},
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
    Run_Time_Text{run_time::Key_Taken, u"This key is already associated with an element of this collection"},
};

std::optional<Failure>& Thread_Error() {
    thread_local std::optional<Failure> error;
    return error;
}

} // namespace

String Description_Of(Long number) {
    const auto* found = std::find_if(Run_Time_Texts.begin(), Run_Time_Texts.end(),
                                     [number](const auto& text) { return text.Number == number; });
    return String(found == Run_Time_Texts.end() ? u"Application-defined or object-defined error"
                                                : found->Description);
}

void Raise(Long number) {
    throw Failure(number, Description_Of(number));
}

void Raise_Missing_Resource(Long resource_id) {
    throw Failure(326, u"Resource with identifier '" + Decimal_Text(resource_id) + u"' not found");
}

Failure Current_Failure() noexcept {
    try {
        throw;
    } catch (const Failure& failure) {
        return failure;
    } catch (const std::bad_alloc&) {
        return Failure(run_time::Out_Of_Memory, Description_Of(run_time::Out_Of_Memory));
    } catch (const std::exception& error) {
        return Failure(Status_Unspecified, From_UTF8(error.what()).value_or(u"Unspecified error"));
    } catch (...) {
        return Failure(Status_Unspecified, u"Unspecified error");
    }
}

void Set_Error(Failure failure) noexcept {
    Thread_Error() = std::move(failure);
}

std::optional<Failure> Take_Error() noexcept {
    return std::exchange(Thread_Error(), std::nullopt);
}

void Check(Status status) {
    if (status >= 0)
        return;
    if (auto error = Take_Error())
        throw std::move(*error);
    throw Failure(status, u"Automation error");
}

} // namespace automation
