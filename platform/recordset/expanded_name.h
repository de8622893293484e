// Names as the XML parser gives them: the namespace, a separator and the local name, or the local name alone
// when it is in no namespace.
#pragma once

#include <cstring>
#include <string_view>

#include "persisted_format.h"

namespace recordset {

// No character of XML, so that no namespace can hold it.
constexpr char Name_Separator = '\f';

inline bool Is_Name(const char* expanded, std::string_view name_space, std::string_view local) {
    if (std::strncmp(expanded, name_space.data(), name_space.size()) != 0)
        return false;
    expanded += name_space.size();
    return *expanded == Name_Separator && local == expanded + 1;
}

inline std::string_view Local_Name(const char* expanded) {
    const char* separator = std::strrchr(expanded, Name_Separator);
    return separator ? separator + 1 : expanded;
}

// The attributes of one element: name, value, name, value, ..., null.
using Attributes = const char* const*;

// Null when the element has no such attribute; an empty namespace stands for none.
inline const char* Attribute(Attributes attributes, std::string_view name_space, std::string_view local) {
    for (; *attributes; attributes += 2)
        if (name_space.empty() ? local == *attributes : Is_Name(*attributes, name_space, local))
            return attributes[1];
    return nullptr;
}

} // namespace recordset
