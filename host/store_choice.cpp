#include "store_choice.h"

#include "automation/create.h"
#include "automation/text.h"
#include "host/setup.h"
#include "own_modules.h"

namespace host {

using automation::Variant;
using interfaces::Store_Keeper;

void Give_Up(const automation::Failure& failure) {
    throw Start_Error(automation::To_UTF8(failure.Reason.empty() ? failure.Description : failure.Reason));
}

Variant Store_Location(const std::optional<std::string>& name) {
    if (!name)
        return {};
    auto text = automation::From_UTF8(*name);
    if (!text) // to replace a byte would name another file
        throw Start_Error("the name of the store is not UTF-8; rename the file, or a folder above it");
    return Variant(*text);
}

Open_Store::Open_Store(const std::optional<std::string>& name) {
    try {
        keeper = automation::Create_Bound<Store_Keeper>(Store_Keeper::Program_Identity);
        automation::Check(keeper->Open(Store_Location(name)));
    } catch (const automation::Failure& failure) {
        if (name || failure.Number != automation::run_time::Cannot_Create_Object)
            Give_Up(failure);
    }
}

Open_Store::~Open_Store() {
    Automation_Boolean closed = AUTOMATION_FALSE;
    if (keeper && keeper->Close(closed) < 0)
        automation::Take_Error(); // there is nothing that a program at its end could do
}

std::string Create_Store(const Store_Init_Command& command) {
    try {
        Offer_Own_Modules();
        const auto keeper = automation::Create_Bound<Store_Keeper>(Store_Keeper::Program_Identity);
        automation::Text name;
        automation::Check(keeper->Create(Store_Location(command.Store),
                                         command.Nodes.value_or(interfaces::Sample_Nodes), name));
        return automation::To_UTF8(name.View());
    } catch (const automation::Failure& failure) {
        Give_Up(failure);
    }
}

} // namespace host
