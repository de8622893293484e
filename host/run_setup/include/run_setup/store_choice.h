// Which store a run works on.
#pragma once

#include <optional>
#include <string>

#include "automation/variant.h"
#include "interfaces/store_keeper.h"

namespace host {

// While it lives, the stand-ins of the product's components work on the store of that name, or on the user's
// own. Does nothing without stand-ins when no name is given: the product's own components know their store.
class Open_Store {
public:
    explicit Open_Store(const std::optional<std::string>& name); // throws Start_Error
    ~Open_Store();
    Open_Store(const Open_Store&) = delete;
    Open_Store& operator=(const Open_Store&) = delete;

private:
    automation::Reference<interfaces::Store_Keeper> keeper; // kept: nothing has to be made to close the store
};

// Makes a new store, with so many nodes instead of the sample's if a number is given. Answers its name.
// Throws Start_Error.
std::string Create_Store(const std::optional<std::string>& store, const std::optional<int>& nodes);

// The name as the keeper of the store takes it.
automation::Variant Store_Location(const std::optional<std::string>& name);

// The command that takes a change back in the store of that name, quoted for a shell; without a password.
std::string How_To_Take_Back(const std::optional<std::string>& store, const std::string& change);

// Why the keeper could not do it, as a Start_Error.
[[noreturn]] void Give_Up(const automation::Failure& failure);

} // namespace host
