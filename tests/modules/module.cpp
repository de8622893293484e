// A module with one class. Compiled several times, each time but one with a fault.
#include "automation/abi.h"
#ifdef OTHER_VERSION // in the identity of its class objects
#undef AUTOMATION_VERSION
#define AUTOMATION_VERSION 2
#endif
#include "automation/server.h"

#include <chrono>
#include <thread>

extern "C" void Defined_Nowhere();

namespace {

class Thing final : public automation::Object<Automation_Dispatch> {
#ifdef SLOW_RELEASE // the module counts no object any more
public:
    static void operator delete(void* memory) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        ::operator delete(memory);
    }

private:
#endif
    automation::Status Get_Member_Identities(const Automation_Name*, std::uint32_t,
                                             std::int32_t* identities) override {
        *identities = 1;
        return AUTOMATION_OK;
    }
    automation::Status Invoke(std::int32_t, std::uint16_t, const Automation_Arguments*, Automation_Variant*,
                              std::uint32_t*) override {
#ifdef UNDEFINED_SYMBOL
        Defined_Nowhere();
#endif
        return AUTOMATION_OK;
    }
};

const automation::Server_Class Classes[] = {
    {u"Test.Thing", {0x11223344, 0x5566, 0x7788, {0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF, 0x01}}, [] {
         return automation::Reference<automation::Unknown>(automation::Make_Object<Thing>());
     }}};

} // namespace

AUTOMATION_SERVER(Classes)
