#include "failures.h"

#include <algorithm>
#include <array>

namespace recordset {

namespace {

struct Failure_Text {
    Long Number;
    String_View Description;
};

constexpr std::array Failure_Texts{
    Failure_Text{number::Wrong_Arguments, u"Arguments are of the wrong type, are out of acceptable range, or "
                                          u"are in conflict with one another."},
    Failure_Text{number::No_Current_Record, u"Either BOF or EOF is True, or the current record has been "
                                            u"deleted. Requested operation requires a current record."},
    Failure_Text{number::No_Such_Item,
                 u"Item cannot be found in the collection corresponding to the requested "
                 u"name or ordinal."},
    Failure_Text{number::Object_Closed, u"Operation is not allowed when the object is closed."},
    Failure_Text{number::Object_Open, u"Operation is not allowed when the object is open."},
    Failure_Text{number::Invalid_Source, u"The connection cannot be used to perform this operation. It is "
                                         u"either closed or invalid in this context."},
    Failure_Text{number::Unreadable,
                 u"Recordset cannot be created from the specified source. The source file "
                 u"or stream must contain Recordset data in XML or ADTG format."},
};

} // namespace

void Fail(String_View source, Long number) {
    const auto* found = std::find_if(Failure_Texts.begin(), Failure_Texts.end(),
                                     [number](const auto& text) { return text.Number == number; });
    if (found == Failure_Texts.end())
        automation::Raise(number);
    throw automation::Failure(number, String(found->Description), String(source));
}

} // namespace recordset
