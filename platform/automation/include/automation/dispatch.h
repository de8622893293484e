// Late binding for a C++ object with a dual interface: its members by name, from one table. Header-only.
//
// Values are converted to a parameter's type before the member is called; an optional parameter that is left
// out takes its default; one by reference is written back to an argument of its own type.
#pragma once

#include <cstring>
#include <vector>

#include "automation/interface.h"

namespace automation {

struct Parameter {
    String_View Name;
    Variant_Type Type; // Integer, Long, Boolean, Double or Text
    bool Optional = false;
    Long Default = 0;
    bool By_Reference = false;
};

// One way to use a member. `Call` gets one value of the wanted type for each parameter.
template <typename Interface>
struct Dispatch_Member {
    String_View Name;
    Long Member_Identity;
    std::uint16_t Kind; // AUTOMATION_METHOD, AUTOMATION_PROPERTY_GET, AUTOMATION_PROPERTY_PUT
    std::vector<Parameter> Parameters;
    Status (*Call)(Interface& object, Variant* values, Variant& result);
};

namespace detail {

inline bool Same_Name(String_View left, String_View right) {
    auto folded = [](char16_t unit) {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
    };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](char16_t one, char16_t other) { return folded(one) == folded(other); });
}

// Where each parameter's argument stands in Values; negative when it is left out.
inline std::vector<int> Placed(const std::vector<Parameter>& parameters, const Automation_Arguments& given,
                               std::uint32_t& wrong) {
    std::vector<int> places(parameters.size(), -1);
    const std::uint32_t positional = given.Count - given.Named_Count;
    for (std::uint32_t at = 0; at < given.Count; ++at) {
        wrong = at;
        const bool is_named = at >= positional;
        const std::size_t slot = is_named ? static_cast<std::size_t>(given.Named[at - positional]) : at;
        if (slot >= places.size())
            Raise(is_named ? run_time::No_Such_Named_Argument : run_time::Wrong_Argument_Count);
        if (places[slot] >= 0)
            Raise(run_time::Wrong_Argument_Count);
        if (given.Values[at].Type != Automation_Missing)
            places[slot] = static_cast<int>(at);
    }
    return places;
}

inline Variant Value_For(const Parameter& parameter, const Automation_Variant* given) {
    if (given)
        return Variant::Adopt([&] {
            Automation_Variant converted{};
            Check(Automation_Convert(&converted, given, static_cast<std::uint16_t>(parameter.Type)));
            return converted;
        }());
    if (!parameter.Optional)
        Raise(run_time::Argument_Not_Optional);
    return Variant(parameter.Default).Converted(parameter.Type);
}

// The record of `value` owns its text, which the argument takes over.
inline void Write_Back(const Parameter& parameter, Variant value, const Automation_Variant& argument) {
    const auto type = static_cast<std::uint16_t>(parameter.Type);
    if (!parameter.By_Reference || argument.Type != (type | Automation_By_Reference))
        return;
    const auto put = [&argument](auto held) { std::memcpy(argument.As_Reference, &held, sizeof(held)); };
    if (parameter.Type == Variant_Type::Integer || parameter.Type == Variant_Type::Boolean)
        put(value.Record().As_Integer);
    else if (parameter.Type == Variant_Type::Long)
        put(value.Record().As_Long);
    else if (parameter.Type == Variant_Type::Double)
        put(value.Record().As_Double);
    else if (parameter.Type == Variant_Type::Text)
        Automation_Free(
            std::exchange(*static_cast<Automation_Block**>(argument.As_Reference), value.Detach().As_Block));
}

template <typename Interface>
void Call(const Dispatch_Member<Interface>& member, Interface& object, const Automation_Arguments& given,
          Variant& result, std::uint32_t& wrong) {
    const auto places = Placed(member.Parameters, given, wrong);
    std::vector<Variant> values;
    for (std::size_t slot = 0; slot < places.size(); ++slot) {
        wrong = places[slot] < 0 ? given.Count : static_cast<std::uint32_t>(places[slot]);
        values.push_back(
            Value_For(member.Parameters[slot], places[slot] < 0 ? nullptr : &given.Values[places[slot]]));
    }
    Drop_Error();
    Check(member.Call(object, values.data(), result));
    for (std::size_t slot = 0; slot < places.size(); ++slot)
        if (places[slot] >= 0)
            Write_Back(member.Parameters[slot], std::move(values[slot]), given.Values[places[slot]]);
}

} // namespace detail

// The identity of an argument is its position in the member's list.
template <typename Members>
Status Find_Members(String_View source, const Members& members, const Automation_Name* names,
                    std::uint32_t count, Long* identities) noexcept {
    return Guard(source, [&] {
        auto text = [&](std::uint32_t at) { return String_View(names[at].Units, names[at].Length); };
        bool found = false;
        for (const auto& member : members) {
            if (count == 0 || !detail::Same_Name(member.Name, text(0)))
                continue;
            found = true;
            std::uint32_t known = 1;
            for (; known < count; ++known) {
                const auto& list = member.Parameters;
                const auto at = std::find_if(list.begin(), list.end(), [&](const Parameter& parameter) {
                    return detail::Same_Name(parameter.Name, text(known));
                });
                if (at == list.end())
                    break;
                identities[known] = static_cast<Long>(at - list.begin());
            }
            identities[0] = member.Member_Identity;
            if (known == count)
                return;
        }
        Raise(found ? run_time::No_Such_Named_Argument : run_time::No_Such_Member);
    });
}

template <typename Interface, typename Members>
Status Invoke_Member(String_View source, const Members& members, Interface& object, Long wanted,
                     std::uint16_t kind, const Automation_Arguments* arguments, Automation_Variant* result,
                     std::uint32_t* wrong_argument) noexcept {
    const Automation_Arguments none{};
    std::uint32_t wrong = 0;
    const Status status = Guard(source, [&] {
        for (const auto& member : members)
            if (member.Member_Identity == wanted && (member.Kind & kind) != 0) {
                Variant value;
                detail::Call(member, object, arguments ? *arguments : none, value, wrong);
                if (result)
                    *result = value.Detach();
                return;
            }
        Raise(run_time::No_Such_Member);
    });
    if (wrong_argument)
        *wrong_argument = wrong;
    return status;
}

} // namespace automation
