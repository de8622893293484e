#include "dialog/owner.h"

namespace dialog {

namespace {

void Hand_Over_In_Flight(Take_Failure* take, void* taker) {
    const auto hand_over = [&](const automation::Failure& failure) {
        take(taker, failure.Source.empty() ? Component_Name : String_View(failure.Source), failure.Number,
             failure.Description);
    };
    try {
        throw;
    } catch (const automation::Failure& failure) {
        hand_over(failure);
    } catch (const std::bad_alloc&) {
        take(taker, Component_Name, automation::run_time::Out_Of_Memory, automation::Out_Of_Memory_Text);
    } catch (...) {
        hand_over(automation::Current_Failure());
    }
}

} // namespace

void Hand_Over_Failure(Take_Failure* take, void* taker) noexcept {
    try {
        Hand_Over_In_Flight(take, taker);
    } catch (...) {
        // Reporting must not fail; what cannot be recorded is lost.
    }
}

void Report(Error_Sink& sink, String_View procedure, Object_Index object) noexcept {
    Hand_Over_Failure([&](String_View source, Long number, String_View description) {
        sink.Handle_Error(source, procedure, number, description, object);
    });
}

String With_Placeholder(String_View text, String_View value) {
    const std::size_t at = text.find(u'~');
    if (at == String_View::npos)
        automation::Raise(automation::run_time::Invalid_Argument);
    return String(text.substr(0, at)).append(value).append(text.substr(at + 1));
}

} // namespace dialog
