#include "automation/collection.h"

#include "automation/text.h"

#include <iterator>

namespace automation {

void Collection::Add(Variant item, String_View key) {
    String folded = Case_Folded(key);
    if (by_key.contains(folded))
        Raise(run_time::Key_Taken);
    entries.push_back({std::move(item), folded});
    try {
        by_key.emplace(std::move(folded), std::prev(entries.cend()));
    } catch (...) {
        entries.pop_back();
        throw;
    }
}

const Variant& Collection::Item(String_View key) const {
    const auto found = by_key.find(Case_Folded(key));
    if (found == by_key.end())
        Raise(run_time::Invalid_Argument);
    return found->second->Item;
}

const Variant& Collection::Item(Long index) const {
    return At(index)->Item;
}

void Collection::Remove(Long index) {
    const auto entry = At(index);
    by_key.erase(entry->Folded_Key);
    entries.erase(entry);
}

Collection::Entries::const_iterator Collection::At(Long index) const {
    if (index < 1 || index > Count())
        Raise(run_time::Subscript_Out_Of_Range);
    return index <= Count() / 2 ? std::next(entries.cbegin(), index - 1)
                                : std::prev(entries.cend(), Count() - index + 1);
}

} // namespace automation
