#include "run_setup/store_choice.h"

#include <algorithm>

#include "automation/create.h"
#include "automation/text.h"
#include "process/errors.h"
#include "run_setup/bundled_modules.h"
#include "run_setup/setup.h"

namespace host {

using automation::Variant;
using interfaces::Store_Keeper;

void Give_Up(const automation::Failure& failure) {
    throw Start_Error(automation::To_UTF8(failure.Reason.empty() ? failure.Description : failure.Reason));
}

Variant Store_Location(const std::optional<std::string>& name) {
    return name ? Variant(automation::From_UTF8_Replacing(*name)) : Variant();
}

namespace {

// A text in single quotes is what it is, but a control character would be hidden in it.
std::string Quoted_For_Shell(const std::string& text) {
    constexpr std::string_view plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_./:@%=,+-";
    if (text.find_first_not_of(plain) == std::string::npos)
        return text;
    const bool is_printable =
        std::all_of(text.begin(), text.end(), [](unsigned char each) { return each >= ' ' && each != 0x7F; });
    constexpr const char* digits = "01234567";
    std::string quoted = is_printable ? "'" : "$'";
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (code < ' ' || code == 0x7F)
            quoted += {'\\', digits[code >> 6U], digits[(code >> 3U) & 7U], digits[code & 7U]};
        else if (character == '\'')
            quoted += is_printable ? "'\\''" : "\\'";
        else
            quoted += (character == '\\' && !is_printable ? "\\" : "") + std::string(1, character);
    }
    return quoted + "'";
}

} // namespace

std::string How_To_Take_Back(const std::optional<std::string>& store, const std::string& change) {
    std::string command = "style-editor store revert " + change;
    if (!store)
        return command;
    automation::Text location;
    automation::Call(automation::Create_Bound<Store_Keeper>(Store_Keeper::Program_Identity),
                     &Store_Keeper::Describe, Store_Location(store), location);
    return command + " --store " + Quoted_For_Shell(automation::To_UTF8(location.View()));
}

Open_Store::Open_Store(const std::optional<std::string>& name) {
    try {
        keeper = automation::Create_Bound<Store_Keeper>(Store_Keeper::Program_Identity);
        automation::Call(keeper, &Store_Keeper::Open, Store_Location(name));
    } catch (const automation::Failure& failure) {
        if (name || failure.Number != automation::run_time::Cannot_Create_Object)
            Give_Up(failure);
    }
}

Open_Store::~Open_Store() {
    Automation_Boolean closed = AUTOMATION_FALSE;
    if (keeper && keeper->Close(closed) < 0)
        automation::Drop_Error(); // there is nothing that a program at its end could do
}

std::string Create_Store(const std::optional<std::string>& store, const std::optional<int>& nodes) {
    try {
        Offer_Bundled_Modules();
        const auto keeper = automation::Create_Bound<Store_Keeper>(Store_Keeper::Program_Identity);
        automation::Text name;
        automation::Call(keeper, &Store_Keeper::Create, Store_Location(store),
                         nodes.value_or(interfaces::Sample_Nodes), name);
        return automation::To_UTF8(name.View());
    } catch (const automation::Failure& failure) {
        Give_Up(failure);
    }
}

} // namespace host
