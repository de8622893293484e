#include "dialog/owner.h"

namespace dialog {

automation::Failure Caught_Failure() noexcept {
    automation::Failure failure = automation::Current_Failure();
    if (failure.Source.empty())
        failure.Source = Component_Name;
    return failure;
}

void Report(Error_Sink& sink, String_View procedure, Object_Index object) noexcept {
    try {
        const automation::Failure failure = Caught_Failure();
        sink.Handle_Error(failure.Source, procedure, failure.Number, failure.Description, object);
    } catch (...) {
        // Reporting must not fail; what cannot be recorded is lost.
    }
}

String With_Placeholder(String_View text, String_View value) {
    const std::size_t at = text.find(u'~');
    if (at == String_View::npos)
        automation::Raise(automation::run_time::Invalid_Argument);
    return String(text.substr(0, at)).append(value).append(text.substr(at + 1));
}

} // namespace dialog
