// Keyed collection: items in the order they were added, indexed from 1, found by key without regard
// to case. Belongs to one thread.
#pragma once

#include <list>
#include <unordered_map>

#include "automation/variant.h"

namespace automation {

class Collection {
public:
    // 457 when the key is taken.
    void Add(Variant item, String_View key);
    // 5 when there is no such key.
    const Variant& Item(String_View key) const;
    // 9 when the index is not in 1 .. Count. Both ends are found in constant time.
    const Variant& Item(Long index) const;
    void Remove(Long index);
    Long Count() const { return static_cast<Long>(entries.size()); }

private:
    struct Entry {
        Variant Item;
        String Folded_Key;
    };
    using Entries = std::list<Entry>;
    Entries::const_iterator At(Long index) const;

    Entries entries;
    std::unordered_map<String, Entries::const_iterator> by_key;
};

} // namespace automation
