// The four entry points of a module, for its classes. Header-only: include it in one source of the module and
// write, outside every namespace,
//
//     AUTOMATION_SERVER(classes)
//
// where `classes` is an array or a span of automation::Server_Class that live as long as the module.
#pragma once

#include <iterator>

#include "automation/interface.h"

namespace automation {

struct Server_Class {
    const char16_t* Program_Identity; // ends with a zero
    Identity Class_Identity;
    Reference<Unknown> (*Create)();
    const char16_t* Threading_Model = u"Apartment";
};

namespace detail {

class Server_Class_Object final : public Object<Automation_Class_Object> {
public:
    explicit Server_Class_Object(const Server_Class& served) : served(served) {}

    Status Create_Instance(const Identity* interface_identity, void** object) override {
        *object = nullptr;
        return Guard({}, [&] {
            const auto created = served.Create();
            if (!created || created->Query_Interface(*interface_identity, object) < 0)
                Raise(run_time::No_Such_Interface);
        });
    }
    Status Lock(Automation_Boolean locked) override {
        live_objects += locked != AUTOMATION_FALSE ? 1 : -1;
        return Status_OK;
    }

private:
    const Server_Class& served;
};

template <typename Classes>
Status Get_Class_Object(const Classes& classes, const Identity& wanted, const Identity& interface_identity,
                        void** object) noexcept {
    *object = nullptr;
    Status status = AUTOMATION_NO_CLASS;
    for (const Server_Class& served : classes)
        if (Equal(served.Class_Identity, wanted)) {
            const Status made = Guard({}, [&] {
                status =
                    Make_Object<Server_Class_Object>(served)->Query_Interface(interface_identity, object);
            });
            return made < 0 ? made : status;
        }
    return status;
}

// All classes, or the first failure.
template <typename Classes>
Status For_Each_Registration(const Classes& classes, Status (*act)(const Automation_Registration*)) noexcept {
    for (const Server_Class& served : classes) {
        const Automation_Registration registration{served.Program_Identity, served.Class_Identity,
                                                   served.Threading_Model, &live_objects};
        if (const Status status = act(&registration); status < 0)
            return status;
    }
    return Status_OK;
}

} // namespace detail

} // namespace automation

#define AUTOMATION_SERVER(classes)                                                                           \
    AUTOMATION_API(Automation_Status) DllRegisterServer() {                                                  \
        return automation::detail::For_Each_Registration(classes, Automation_Register);                      \
    }                                                                                                        \
    AUTOMATION_API(Automation_Status) DllUnregisterServer() {                                                \
        return automation::detail::For_Each_Registration(classes, Automation_Unregister);                    \
    }                                                                                                        \
    AUTOMATION_API(Automation_Status)                                                                        \
    DllGetClassObject(const Automation_Identity* class_identity,                                             \
                      const Automation_Identity* interface_identity, void** object) {                        \
        return automation::detail::Get_Class_Object(classes, *class_identity, *interface_identity, object);  \
    }                                                                                                        \
    AUTOMATION_API(Automation_Status) DllCanUnloadNow() {                                                    \
        return automation::Live_Objects() == 0 ? AUTOMATION_OK : AUTOMATION_NO;                              \
    }
