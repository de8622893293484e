#include "classes/class_table.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>

#include "automation/text.h"
#include "class_folders.h"
#include "modules.h"

namespace classes {

namespace {

using automation::Status;

struct Offer {
    Class_Description Description;
    std::string Module; // empty: Description.Create makes it
};

struct Class_Table {
    std::mutex Lock;
    std::vector<Class_Description> Provided;
    std::vector<Offer> Offered;
};

Class_Table& Table() {
    static Class_Table table;
    return table;
}

// How a caller names a class.
struct Wanted {
    String_View Program_Identity;
    const Identity* Class_Identity = nullptr; // else

    bool Is(String_View program_identity, const Identity& class_identity) const {
        return Class_Identity ? automation::Equal(class_identity, *Class_Identity)
                              : automation::Equal_Ignoring_Case(program_identity, Program_Identity);
    }
    std::string Name() const {
        return Class_Identity ? Identity_Text(*Class_Identity) : automation::To_UTF8(Program_Identity);
    }
};

[[noreturn]] void Refuse(const std::string& reason) {
    using namespace automation;
    throw Failure(run_time::Cannot_Create_Object, Description_Of(run_time::Cannot_Create_Object), {},
                  From_UTF8_Replacing(reason));
}

template <typename Entry, typename Member>
std::optional<Entry> Find(const std::vector<Entry>& entries, const Wanted& wanted, Member description) {
    const std::lock_guard hold(Table().Lock);
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
        return wanted.Is(description(entry).Program_Identity, description(entry).Class_Identity);
    });
    return found == entries.end() ? std::nullopt : std::optional(*found);
}

Reference<Unknown> Made_By(const Class_Description& description, const Wanted& wanted) {
    auto object = description.Create ? description.Create() : nullptr;
    if (!object)
        Refuse(wanted.Name() + " is withheld by the host");
    return object;
}

// The module is held until its class object has gone.
Reference<Unknown> Made_In(const std::string& path, const Identity& class_identity) {
    const std::string checked = Checked_Module(path);
    const Module_Hold module = Load_Module(checked);
    const Class_Object class_object = Class_Object_In(*module, checked, class_identity);
    void* object = nullptr;
    automation::Drop_Error();
    automation::Check(class_object->Create_Instance(&Unknown::Interface_Identity, &object));
    return Reference<Unknown>::Adopt(static_cast<Unknown*>(object));
}

// The module and class that the manifests have; else `skipped` says which of them are broken.
std::optional<Offer> Find_Registered(const Wanted& wanted, std::string& skipped) {
    for (const Found_Manifest& found : Read_Manifests()) {
        if (!found.Problem.empty())
            skipped += "; skipped: " + found.Problem;
        for (const Manifest_Class& entry : found.Content.Classes) {
            if (!wanted.Is(entry.Program_Identity, entry.Class_Identity))
                continue;
            if (found.Content.Interface != AUTOMATION_VERSION)
                throw Registration_Error(Other_Version(found.Content.Module, found.Content.Interface));
            return Offer{{entry.Program_Identity, entry.Class_Identity, {}}, found.Content.Module};
        }
    }
    return std::nullopt;
}

Reference<Unknown> Create_Registered(const Wanted& wanted, bool with_offers) {
    std::string skipped;
    auto offer = Find_Registered(wanted, skipped);
    const auto offered = Find(Table().Offered, wanted, [](const Offer& entry) { return entry.Description; });
    if (!offer && with_offers)
        offer = offered;
    if (!offer)
        Refuse(wanted.Name() +
               " is not registered; install style-editor or the package that brings it, or run style-editor "
               "register with its module" +
               skipped);
    return offer->Module.empty() ? Made_By(offer->Description, wanted)
                                 : Made_In(offer->Module, offer->Description.Class_Identity);
}

Reference<Unknown> Create_Underlying(const Wanted& wanted, bool with_offers = true) {
    try {
        return Create_Registered(wanted, with_offers);
    } catch (const Registration_Error& error) {
        Refuse(error.what());
    }
}

Reference<Unknown> Create(const Wanted& wanted) {
    const auto provided =
        Find(Table().Provided, wanted, [](const Class_Description& entry) { return entry; });
    return provided ? Made_By(*provided, wanted) : Create_Underlying(wanted);
}

// The language run time raises these two itself: no source.
Status Create_And_Bind(const Wanted& wanted, const Identity& interface_identity, void** object) noexcept {
    *object = nullptr;
    return automation::Guard({}, [&] {
        const auto created = Create(wanted);
        if (created->Query_Interface(interface_identity, object) < 0)
            automation::Raise(automation::run_time::No_Such_Interface);
    });
}

auto Named(String_View program_identity) {
    return [program_identity](const Class_Description& description) {
        return automation::Equal_Ignoring_Case(description.Program_Identity, program_identity);
    };
}

void Add_Offer(Offer offer) {
    const std::lock_guard hold(Table().Lock);
    auto& offers = Table().Offered;
    std::erase_if(offers, [named = Named(offer.Description.Program_Identity)](const Offer& entry) {
        return named(entry.Description);
    });
    offers.push_back(std::move(offer));
}

} // namespace

void Provide_Class(Class_Description description) {
    const std::lock_guard hold(Table().Lock);
    auto& provided = Table().Provided;
    std::erase_if(provided, Named(description.Program_Identity));
    provided.push_back(std::move(description));
}

void Revoke_Class(String_View program_identity) {
    const std::lock_guard hold(Table().Lock);
    std::erase_if(Table().Provided, Named(program_identity));
}

void Offer_Class(Class_Description description) {
    Add_Offer({std::move(description), {}});
}

void Offer_Module(String_View program_identity, const Identity& class_identity, const std::string& path) {
    Add_Offer({{String(program_identity), class_identity, {}}, path});
}

Reference<Unknown> Create_Underlying(String_View program_identity) {
    return Create_Underlying(Wanted{program_identity});
}

std::optional<std::string> Explain(String_View program_identity) {
    try {
        Create_Underlying(Wanted{program_identity}, false);
        return std::nullopt;
    } catch (const automation::Failure& failure) {
        return automation::To_UTF8(failure.Reason.empty() ? failure.Description : failure.Reason);
    }
}

} // namespace classes

Automation_Status Automation_Create(const char16_t* program_identity, std::uint32_t length,
                                    const Automation_Identity* interface_identity, void** object) noexcept {
    return classes::Create_And_Bind({{program_identity, length}, nullptr}, *interface_identity, object);
}

Automation_Status Automation_Create_By_Identity(const Automation_Identity* class_identity,
                                                const Automation_Identity* interface_identity,
                                                void** object) noexcept {
    return classes::Create_And_Bind({{}, class_identity}, *interface_identity, object);
}

std::int32_t Automation_Free_Unused_Modules() noexcept {
    try {
        return classes::Free_Unused_Modules();
    } catch (...) {
        return 0;
    }
}
