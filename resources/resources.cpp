#include "resources/resources.h"

#include <algorithm>
#include <memory>
#include <mutex>

#include "automation/failure.h"
#include "embedded.h"

namespace resources {

using automation::Long;
using automation::String;

namespace {

std::mutex replacement_lock;
std::shared_ptr<const shell::String_Table> replacement; // null: the built-in table

void Set_Replacement(std::shared_ptr<const shell::String_Table> table) {
    const std::lock_guard guard(replacement_lock);
    replacement = std::move(table);
}

std::shared_ptr<const shell::String_Table> Replacement() {
    const std::lock_guard guard(replacement_lock);
    return replacement;
}

// Null when the list has no such id.
template <typename Entry>
const Entry* Find(std::span<const Entry> list, Long id) {
    const auto found = std::lower_bound(list.begin(), list.end(), id,
                                        [](const Entry& entry, Long wanted) { return entry.Id < wanted; });
    return found == list.end() || found->Id != id ? nullptr : &*found;
}

std::optional<String> Find_Text(Long id) {
    if (const auto table = Replacement()) {
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

void Replace_Strings(shell::String_Table table) {
    Set_Replacement(std::make_shared<const shell::String_Table>(std::move(table)));
}

void Restore_Strings() {
    Set_Replacement(nullptr);
}

std::basic_string_view<unsigned char> Load_Picture(Long id) {
    const Embedded_Picture* entry = Find(Embedded_Pictures(), id);
    return entry != nullptr ? entry->Bytes : std::basic_string_view<unsigned char>{};
}

} // namespace resources
