#include "shell/registry.h"

#include <algorithm>
#include <filesystem>
#include <mutex>

#include "automation/text.h"
#include "hive.h"
#include "predefined_keys.h"
#include "shell/eight_bit.h"
#include "shell/trusted_file.h"

namespace shell {

using automation::Long;
using automation::String;
using automation::String_View;

namespace {

constexpr std::size_t Largest_File = std::size_t{64} << 20U;

using Shared_Hive = std::shared_ptr<const Hive>;

// A place in a hive; `Values` lives as long as the hive does.
struct Open_Key {
    Shared_Hive Owner;
    String Path;
    const Hive::Values* Values;
};

std::mutex registry_lock; // of the two below
Shared_Hive loaded_hive;
std::map<Registry_Key, Open_Key> open_keys;

void Replace_Hive(Shared_Hive hive) {
    const std::lock_guard guard(registry_lock);
    loaded_hive = std::move(hive);
}

const Predefined_Key* Find_Predefined(Registry_Key key) {
    const auto* found = std::find_if(Predefined_Keys.begin(), Predefined_Keys.end(),
                                     [key](const Predefined_Key& entry) { return entry.Key == key; });
    return found == Predefined_Keys.end() ? nullptr : found;
}

// Nothing when `key` is no open key. A predefined key is open always, in a hive or without one.
std::optional<Open_Key> Place_Of(Registry_Key key) {
    if (const Predefined_Key* predefined = Find_Predefined(key)) {
        const auto* values = loaded_hive ? loaded_hive->Find(predefined->Name) : nullptr;
        return Open_Key{loaded_hive, String(predefined->Name), values};
    }
    const auto found = open_keys.find(key);
    return found == open_keys.end() ? std::nullopt : std::optional(found->second);
}

// A separator at the end of a path does not matter.
void Enter(Open_Key& place, const char* path) {
    if (path == nullptr || *path == '\0')
        return;
    place.Path += u"\\" + From_Eight_Bit(path);
    if (place.Path.ends_with(u'\\'))
        place.Path.pop_back();
    place.Values = place.Owner ? place.Owner->Find(place.Path) : nullptr;
}

Registry_Key Free_Key() {
    Registry_Key key = 1;
    for (auto entry = open_keys.begin(); entry != open_keys.end() && entry->first == key; ++entry)
        ++key;
    return key;
}

const Registry_Value* Find_Value(const Open_Key& place, const char* name) {
    if (place.Values == nullptr)
        return nullptr;
    const auto found =
        place.Values->find(automation::Case_Folded(From_Eight_Bit(name != nullptr ? name : "")));
    return found == place.Values->end() ? nullptr : &found->second;
}

Long Give(const Registry_Value& value, std::uint8_t* data, std::uint32_t* size) {
    if (size == nullptr)
        return registry_status::Success;
    const std::uint32_t room = *size;
    *size = static_cast<std::uint32_t>(value.Bytes.size());
    if (data == nullptr)
        return registry_status::Success;
    if (room < *size)
        return registry_status::More_Data;
    std::copy(value.Bytes.begin(), value.Bytes.end(), data);
    return registry_status::Success;
}

} // namespace

void Load_Hive(const std::string& path) {
    try {
        const Trusted_File file(std::filesystem::absolute(path), Trusted_File::Sticky::Anywhere);
        Replace_Hive(Parse_Hive(file.Bytes(Largest_File)));
    } catch (const Trust_Error& error) {
        throw Format_Error(0, std::string("the registry file is not used: ") + error.what());
    } catch (const Format_Error& error) {
        throw Format_Error(error.Line, error.Reason, path);
    }
}

void Unload_Hive() {
    Replace_Hive(nullptr);
}

Long RegOpenKeyExA(Registry_Key key, const char* path, std::uint32_t, std::uint32_t access,
                   Registry_Key* opened) {
    const std::lock_guard guard(registry_lock);
    *opened = 0;
    auto place = Place_Of(key);
    if (!place)
        return registry_status::Invalid_Handle;
    if ((access & ~KEY_READ) != 0)
        return registry_status::Access_Denied;
    Enter(*place, path);
    if (place->Values == nullptr)
        return registry_status::Not_Found;
    *opened = Free_Key();
    open_keys.emplace(*opened, std::move(*place));
    return registry_status::Success;
}

Long RegQueryValueExA(Registry_Key key, const char* name, std::uint32_t* reserved, std::uint32_t* type,
                      std::uint8_t* data, std::uint32_t* size) {
    if (reserved != nullptr || (data != nullptr && size == nullptr))
        return registry_status::Invalid_Parameter;
    const std::lock_guard guard(registry_lock);
    const auto place = Place_Of(key);
    if (!place)
        return registry_status::Invalid_Handle;
    const Registry_Value* value = Find_Value(*place, name);
    if (value == nullptr)
        return registry_status::Not_Found;
    if (type != nullptr)
        *type = value->Type;
    return Give(*value, data, size);
}

Long RegCloseKey(Registry_Key key) {
    if (Find_Predefined(key) != nullptr)
        return registry_status::Success;
    const std::lock_guard guard(registry_lock);
    return open_keys.erase(key) == 1 ? registry_status::Success : registry_status::Invalid_Handle;
}

} // namespace shell
