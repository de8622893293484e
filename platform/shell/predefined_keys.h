// The predefined keys and their names in a registry file.
#pragma once

#include <array>

#include "shell/registry.h"

namespace shell {

struct Predefined_Key {
    Registry_Key Key;
    automation::String_View Name;
};

constexpr std::array Predefined_Keys{
    Predefined_Key{HKEY_CLASSES_ROOT, u"HKEY_CLASSES_ROOT"},
    Predefined_Key{HKEY_CURRENT_USER, u"HKEY_CURRENT_USER"},
    Predefined_Key{HKEY_LOCAL_MACHINE, u"HKEY_LOCAL_MACHINE"},
    Predefined_Key{HKEY_USERS, u"HKEY_USERS"},
    Predefined_Key{HKEY_CURRENT_CONFIG, u"HKEY_CURRENT_CONFIG"},
};

} // namespace shell
