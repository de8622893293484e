#include "hive.h"

#include "automation/text.h"

namespace shell {

using automation::String;
using automation::String_View;

namespace {

constexpr char16_t Separator = u'\\';

} // namespace

Hive::Values& Hive::Make_Key(String_View path) {
    return keys[automation::Case_Folded(path)];
}

void Hive::Remove_Key(String_View path) {
    const String folded = automation::Case_Folded(path);
    const String below = folded + Separator;
    auto removed = keys.erase(folded);
    for (auto key = keys.lower_bound(below); key != keys.end() && key->first.starts_with(below); ++removed)
        key = keys.erase(key);
    const auto parent_end = folded.rfind(Separator);
    if (removed > 0 && parent_end != String::npos)
        keys.try_emplace(folded.substr(0, parent_end)); // it stays, even if only what was below it made it
}

const Hive::Values* Hive::Find(String_View path) const {
    static const Values none;
    const String folded = automation::Case_Folded(path);
    const auto found = keys.find(folded);
    if (found != keys.end())
        return &found->second;
    const auto below = keys.lower_bound(folded + Separator);
    return below != keys.end() && below->first.starts_with(folded + Separator) ? &none : nullptr;
}

} // namespace shell
