// Which store the components of this process stand on.
#include <cstdlib>
#include <filesystem>
#include <mutex>

#include "automation/text.h"
#include "components.h"
#include "history.h"
#include "location.h"

namespace stores {

namespace {

using automation::Long;
using automation::Status;
using automation::Variant;

std::mutex use_lock;
std::shared_ptr<Store> in_use; // null: none has been asked for
// An unloaded module would have forgotten which store it was.
std::optional<automation::Keep_Module> keep;

// A relative path in XDG_DATA_HOME does not count.
std::filesystem::path Data_Folder() {
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data == '/')
        return data;
    if (const char* home = std::getenv("HOME"); home && *home == '/')
        return std::filesystem::path(home) / ".local" / "share";
    throw Store_Error(Store_Error::Reason::Unusable,
                      "there is no home folder for your own store; set HOME or name a store with --store");
}

std::string Own_Store() {
    return "sqlite:" + (Data_Folder() / "style-editor" / "store.db").string();
}

std::shared_ptr<Store> Open_Or_Create(const std::string& name) {
    try {
        return Store::Open(name);
    } catch (const Store_Error& error) {
        if (error.Why != Store_Error::Reason::Missing)
            throw;
    }
    try {
        return Store::Create(name);
    } catch (const Store_Error& error) {
        if (error.Why != Store_Error::Reason::Already_There) // another run was faster
            throw;
    }
    return Store::Open(name);
}

// Under the lock.
void Set(std::shared_ptr<Store> store) {
    in_use = std::move(store);
    if (!in_use)
        keep.reset();
    else if (!keep)
        keep.emplace();
}

class Keeper final : public Component<interfaces::Store_Keeper, interfaces::Store_History> {
public:
    Status Open(const Variant& Location) override {
        return Serve(
            [&] { Use_Store(Is_Own(Location) ? Open_Or_Create(Own_Store()) : Store::Open(URL(Location))); });
    }
    Status Create(const Variant& Location, Long Nodes, automation::Text& Result) override {
        return Serve([&] {
            Result =
                To_Text(Store::Create(URL(Location),
                                      Nodes == interfaces::Sample_Nodes ? std::nullopt : std::optional(Nodes))
                            ->Address());
        });
    }
    Status Describe(const Variant& Location, automation::Text& Result) override {
        return Serve([&] { Result = To_Text(Locate(URL(Location)).Address); });
    }
    Status Upgrade(const Variant& Location, automation::Text& Result) override {
        return Serve([&] {
            Store::Upgrade(URL(Location));
            Result = To_Text(Locate(URL(Location)).Address);
        });
    }
    Status Read_Changes(const Variant& Location, const Variant& Config_ID, const Variant& Partition_ID,
                        const Variant& Node_Number, Variant& Result) override {
        return Serve([&] {
            const auto session = Store::Open(URL(Location))->Session_Here();
            Result = Changes_Of(*session, {&Config_ID, &Partition_ID, &Node_Number});
        });
    }
    Status Revert(const Variant& Location, const Variant& First, const Variant& Last,
                  Automation_Boolean Force, Automation_Boolean Dry_Run, Variant& Result,
                  automation::Text& Change) override {
        return Serve([&] {
            const auto session = Store::Open(URL(Location))->Session_Here();
            auto reverted = stores::Revert(*session, automation::To_UTF8(First.To_Text()),
                                           automation::To_UTF8(Last.To_Text()), Force != AUTOMATION_FALSE,
                                           Dry_Run != AUTOMATION_FALSE);
            Result = std::move(reverted.Rows);
            Change = To_Text(reverted.Change);
        });
    }
    Status Close(Automation_Boolean& Closed) override {
        return Serve([&] {
            const std::lock_guard hold(use_lock);
            Closed = in_use ? AUTOMATION_TRUE : AUTOMATION_FALSE;
            Set(nullptr);
        });
    }

private:
    static bool Is_Own(const Variant& location) { return location.Type() == automation::Variant_Type::Empty; }
    static std::string URL(const Variant& location) {
        return Is_Own(location) ? Own_Store() : automation::To_UTF8(location.To_Text());
    }
    static automation::Text To_Text(const std::string& text) {
        return automation::Text(automation::From_UTF8_Replacing(text));
    }
};

} // namespace

void Use_Store(std::shared_ptr<Store> store) {
    const std::lock_guard hold(use_lock);
    Set(std::move(store));
}

std::shared_ptr<Session> Current_Session() try {
    std::shared_ptr<Store> store;
    {
        const std::lock_guard hold(use_lock);
        if (!in_use)
            Set(Open_Or_Create(Own_Store()));
        store = in_use;
    }
    return store->Session_Here();
} catch (const Store_Error& error) {
    Fail(error);
}

void Fail(const Store_Error& error) {
    throw automation::Failure(automation::Status_Unspecified, automation::From_UTF8_Replacing(error.what()));
}

New_Object Make_Store_Keeper() {
    return automation::Reference<interfaces::Store_Keeper>(automation::Make_Object<Keeper>());
}

} // namespace stores
