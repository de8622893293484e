#include "resources/resources.h"

#include <algorithm>
#include <optional>

#include "automation/number.h"
#include "embedded.h"
#include "shell/replaced_strings.h"

namespace resources {

using automation::Long;
using automation::String;

namespace {

// Null when the list has no such id.
template <typename Entry>
const Entry* Find(std::span<const Entry> list, Long id) {
    const auto found = std::lower_bound(list.begin(), list.end(), id,
                                        [](const Entry& entry, Long wanted) { return entry.Id < wanted; });
    return found == list.end() || found->Id != id ? nullptr : &*found;
}

std::optional<String> Find_Text(Long id) {
    if (const auto table = shell::Replaced_Strings()) {
        const String* text = table->Find(id);
        return text != nullptr ? std::optional(*text) : std::nullopt;
    }
    const Embedded_Text* entry = Find(Embedded_Texts(), id);
    return entry != nullptr ? std::optional(String(entry->Text)) : std::nullopt;
}

} // namespace

String Load_String(Long id) {
    if (auto text = Find_Text(id))
        return std::move(*text);
    automation::Raise_Missing_Resource(id);
}

std::basic_string_view<unsigned char> Load_Picture(Long id) {
    const Embedded_Picture* entry = Find(Embedded_Pictures(), id);
    return entry != nullptr ? entry->Bytes : std::basic_string_view<unsigned char>{};
}

} // namespace resources
