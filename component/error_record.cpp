// The error record, and what happens when reporting itself fails: the user log and the "Internal Error" box.
#include "automation/number.h"
#include "busyness_rules.h"
#include "resources/resources.h"

namespace component {

namespace {

constexpr Long Critical_Box = 16; // OK button, stop icon
constexpr String_View Internal_Error_Title = u"Internal Error";

String_View Object_Name(Object_Index object) {
    switch (object) {
    case Object_Index::Busyness_Rules:
        return u"Busyness_Rules";
    case Object_Index::dlgGUI:
        return u"dlgGUI";
    }
    return {};
}

String Bracketed(String_View text) {
    return String(u"[").append(text).append(u"]");
}

} // namespace

void Busyness_Rules::Handle_Error(String Source, String_View Procedure, Long Number, String_View Description,
                                  Object_Index Object) {
    try {
        const String_View object = Object_Name(Object);
        if (!object.empty())
            Source = Bracketed(Source) + Bracketed(object);
        state.Error_Code = Number;
        state.Error_Description = Description;
        if (!Procedure.empty())
            state.Error_Location = Source.append(Procedure);
        else // the number names a text of the language
            state.Error_Description = resources::Load_String(automation::Add(state.Language_Offset, Number));
    } catch (...) {
        const automation::Failure failure = dialog::Caught_Failure();
        Report_Error(failure.Source, failure.Number, failure.Description);
    }
}

void Busyness_Rules::Report_Error(String_View Location, Long Code, String_View Description) {
    try {
        state.Error_Location = Location;
        state.Error_Code = Code;
        state.Error_Description = Description;
        Show_Internal_Error();
    } catch (...) {
        // There is nobody left to report to.
    }
}

void Busyness_Rules::Show_Internal_Error() {
    try {
        Write_User_Log();
        if (state.Silent_Error)
            return;
        const String message = u"Location:     " + state.Error_Location + u"\r\nCode:          " +
                               automation::Decimal_Text(state.Error_Code) + u"\r\nDescription: " +
                               state.Error_Description;
        if (state.Message_Box_Component)
            Show_Box(Variant(Long{1}), message, 3, 1, Internal_Error_Title);
        else
            toolkit::Show_Message(
                {.Text = message, .Style = Critical_Box, .Title = String(Internal_Error_Title)});
    } catch (...) {
        // As above.
    }
}

String Busyness_Rules::Language_Text(Long Text_ID) {
    try {
        return resources::Load_String(automation::Add(state.Language_Offset, Text_ID));
    } catch (...) {
        const automation::Failure failure = dialog::Caught_Failure();
        Report_Error(failure.Source, failure.Number, failure.Description);
        return {};
    }
}

std::basic_string_view<unsigned char> Busyness_Rules::Language_Picture(Long bitmap_id) {
    try {
        const auto picture = resources::Load_Picture(bitmap_id);
        if (picture.empty())
            automation::Raise_Missing_Resource(bitmap_id);
        return picture;
    } catch (...) {
        const automation::Failure failure = dialog::Caught_Failure();
        Report_Error(failure.Source, failure.Number, failure.Description);
        return {};
    }
}

} // namespace component
