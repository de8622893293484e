#include <algorithm>
#include <charconv>

#include "automation/text.h"
#include "components.h"
#include "connection.h"
#include "stored_text.h"

namespace stores {

int Key_Of(const automation::Variant& argument) {
    const std::string text = automation::To_UTF8(argument.To_Text());
    automation::Integer key = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, key);
    if (stopped != end || error == std::errc::invalid_argument)
        automation::Raise(automation::run_time::Type_Mismatch);
    if (error == std::errc::result_out_of_range)
        automation::Raise(automation::run_time::Overflow);
    return key;
}

std::string Text_Of(const automation::Variant& argument) {
    const automation::String text = argument.To_Text();
    if (!automation::Is_Well_Formed(text) || !std::all_of(text.begin(), text.end(), Is_Deliverable))
        throw automation::Failure(automation::Status_Unspecified,
                                  u"A text holds a character that cannot be stored");
    return automation::To_UTF8(text);
}

std::vector<Value> Values_Of(std::initializer_list<const automation::Variant*> keys,
                             std::initializer_list<const automation::Variant*> texts) {
    Values values;
    for (const auto* key : keys)
        values.emplace_back(Key_Of(*key));
    for (const auto* text : texts)
        values.emplace_back(Text_Of(*text));
    return values;
}

} // namespace stores
