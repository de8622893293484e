// Reference-counted interfaces.
//
// An interface is an abstract class over Unknown whose members return a Status and throw nothing; its
// identity names its exact member order. Objects are made with a count of one by Make_Object and
// delete themselves at zero. Counting is thread-safe; whether the rest of an object is, its own
// contract says.
#pragma once

#include <algorithm>
#include <atomic>
#include <iterator>
#include <type_traits>
#include <utility>

#include "automation/failure.h"

namespace automation {

// Identity of an interface or a class.
using Identity = Automation_Identity;
constexpr bool Equal(const Identity& left, const Identity& right) {
    return left.A == right.A && left.B == right.B && left.C == right.C &&
           std::equal(std::begin(left.D), std::end(left.D), std::begin(right.D));
}

class Unknown {
public:
    static constexpr Identity Interface_Identity{0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

    // On success `object` holds a counted pointer to the wanted interface; else null and
    // Status_No_Interface.
    virtual Status Query_Interface(const Identity& wanted, void** object) noexcept = 0;
    virtual std::uint32_t Add_Reference() noexcept = 0;
    virtual std::uint32_t Release() noexcept = 0;

    Unknown(const Unknown&) = delete;
    Unknown& operator=(const Unknown&) = delete;

protected:
    Unknown() = default;
    ~Unknown() = default;
};

// A counted pointer. Following an unset one is run-time failure 91, never a crash.
template <typename Interface>
class Reference {
public:
    Reference() = default;
    Reference(std::nullptr_t) {}
    Reference(const Reference& other) : pointer(other.pointer) {
        if (pointer)
            pointer->Add_Reference();
    }
    Reference(Reference&& other) noexcept : pointer(std::exchange(other.pointer, nullptr)) {}
    template <typename Derived>
    requires std::is_convertible_v<Derived*, Interface*> Reference(const Reference<Derived>& other)
        : pointer(other.Get()) {
        if (pointer)
            pointer->Add_Reference();
    }
    Reference& operator=(Reference other) noexcept {
        std::swap(pointer, other.pointer);
        return *this;
    }
    ~Reference() {
        if (pointer)
            pointer->Release();
    }

    // Takes over a count that the caller holds.
    static Reference Adopt(Interface* counted) {
        Reference reference;
        reference.pointer = counted;
        return reference;
    }
    static Reference To(Interface& object) {
        object.Add_Reference();
        return Adopt(&object);
    }

    Interface* Get() const { return pointer; }
    explicit operator bool() const { return pointer != nullptr; }
    Interface* operator->() const { return &**this; }
    Interface& operator*() const {
        if (!pointer)
            Raise(run_time::Object_Not_Set);
        return *pointer;
    }

private:
    Interface* pointer = nullptr;
};

// Objects of this module that are alive, and what else keeps it loaded. Each module counts its own.
namespace detail {
__attribute__((visibility("hidden"))) inline std::atomic<std::int64_t> live_objects{0};
}
inline std::int64_t Live_Objects() noexcept {
    return detail::live_objects;
}

// Keeps the module loaded that it is made in.
class Keep_Module {
public:
    Keep_Module() noexcept { ++detail::live_objects; }
    ~Keep_Module() { --detail::live_objects; }
    Keep_Module(const Keep_Module&) = delete;
    Keep_Module& operator=(const Keep_Module&) = delete;
};

// Base of every object class: counting and interface look-up for the interfaces it is made of.
template <typename First, typename... Rest>
class Object : public First, public Rest... {
public:
    Status Query_Interface(const Identity& wanted, void** object) noexcept final {
        *object = nullptr;
        if (Equal(wanted, Unknown::Interface_Identity))
            *object = static_cast<Unknown*>(static_cast<First*>(this));
        Offer<First>(wanted, object);
        (Offer<Rest>(wanted, object), ...);
        if (*object == nullptr)
            return Status_No_Interface;
        Add_Reference();
        return Status_OK;
    }
    std::uint32_t Add_Reference() noexcept final { return ++count; }
    std::uint32_t Release() noexcept final {
        const std::uint32_t left = --count;
        if (left == 0)
            delete this;
        return left;
    }

protected:
    Object() = default;
    virtual ~Object() = default;

private:
    template <typename Interface>
    void Offer([[maybe_unused]] const Identity& wanted, [[maybe_unused]] void** object) noexcept {
        // An interface without an identity of its own is for friends of the class, never looked up.
        if constexpr (!Equal(Interface::Interface_Identity, Unknown::Interface_Identity)) {
            if (Equal(wanted, Interface::Interface_Identity))
                *object = static_cast<Interface*>(this);
            else if constexpr (Has_Base<Interface>)
                if (Equal(wanted, Interface::Base_Interface::Interface_Identity))
                    *object = static_cast<typename Interface::Base_Interface*>(this);
        }
    }

    // An interface over another one, such as a dual interface, names it as its Base_Interface.
    template <typename Interface>
    static constexpr bool Has_Base = requires {
        typename Interface::Base_Interface;
    };

    Keep_Module keep;
    std::atomic<std::uint32_t> count{1};
};

template <typename Class, typename... Arguments>
Reference<Class> Make_Object(Arguments&&... arguments) {
    return Reference<Class>::Adopt(new Class(std::forward<Arguments>(arguments)...));
}

// Binds an object to one of its interfaces: 91 for no object, 430 for no such interface.
template <typename Interface>
Reference<Interface> Bind(const Reference<Unknown>& object) {
    static_assert(std::is_same_v<Interface, Unknown> ||
                      !Equal(Interface::Interface_Identity, Unknown::Interface_Identity),
                  "an interface without an identity of its own cannot be looked up");
    void* found = nullptr;
    if (object->Query_Interface(Interface::Interface_Identity, &found) < 0)
        Raise(run_time::No_Such_Interface);
    return Reference<Interface>::Adopt(static_cast<Interface*>(found));
}

} // namespace automation
