// The error record, and what happens when reporting itself fails: the user log and the "Internal Error" box.
#include <span>

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

// Without memory for all of it, as much as there is room for.
void Append(String& record, String_View text) {
    try {
        record += text;
    } catch (const std::bad_alloc&) {
        record += text.substr(0, record.capacity() - record.size());
    }
}

void Keep(String& record, String_View text) {
    record.clear();
    Append(record, text);
}

} // namespace

void Busyness_Rules::Reserve_Error_Record() {
    constexpr std::size_t longest_usual = 500;
    state.Error_Location.reserve(longest_usual);
    state.Error_Description.reserve(longest_usual);
}

void Busyness_Rules::Handle_Error(String_View Source, String_View Procedure, Long Number,
                                  String_View Description, Object_Index Object) {
    try {
        const String_View object = Object_Name(Object);
        state.Error_Code = Number;
        Keep(state.Error_Description, Description);
        if (!Procedure.empty()) {
            state.Error_Location.clear();
            const String_View in_brackets[] = {u"[", Source, u"][", object, u"]", Procedure},
                              plain[] = {Source, Procedure};
            for (const String_View part : object.empty() ? std::span<const String_View>(plain) : in_brackets)
                Append(state.Error_Location, part);
        } else // the number names a text of the language
            state.Error_Description = resources::Load_String(automation::Add(state.Language_Offset, Number));
    } catch (...) {
        Report_Error_In_Flight();
    }
}

void Busyness_Rules::Report_Error_In_Flight() noexcept {
    dialog::Hand_Over_Failure([this](String_View source, Long number, String_View description) {
        Report_Error(source, number, description);
    });
}

void Busyness_Rules::Report_Error(String_View Location, Long Code, String_View Description) {
    try {
        Keep(state.Error_Location, Location);
        state.Error_Code = Code;
        Keep(state.Error_Description, Description);
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
        Report_Error_In_Flight();
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
        Report_Error_In_Flight();
        return {};
    }
}

} // namespace component
