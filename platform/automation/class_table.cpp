#include "automation/class_table.h"

#include <algorithm>
#include <mutex>

namespace automation {

namespace {

struct Class_Table {
    std::mutex Lock;
    std::vector<Class_Description> Classes;
};

Class_Table& Table() {
    static Class_Table table;
    return table;
}

auto Named(String_View program_identity) {
    return [program_identity](const Class_Description& description) {
        return Equal_Ignoring_Case(description.Program_Identity, program_identity);
    };
}

template <typename Predicate>
Reference<Unknown> Create_First(Predicate wanted) {
    std::function<Reference<Unknown>()> create;
    {
        const std::lock_guard hold(Table().Lock);
        const auto& classes = Table().Classes;
        const auto found = std::find_if(classes.begin(), classes.end(), wanted);
        if (found != classes.end())
            create = found->Create;
    }
    auto object = create ? create() : nullptr;
    if (!object)
        Raise(run_time::Cannot_Create_Object);
    return object;
}

} // namespace

void Register_Class(Class_Description description) {
    const std::lock_guard hold(Table().Lock);
    auto& classes = Table().Classes;
    std::erase_if(classes, Named(description.Program_Identity));
    classes.push_back(std::move(description));
}

void Revoke_Class(String_View program_identity) {
    const std::lock_guard hold(Table().Lock);
    std::erase_if(Table().Classes, Named(program_identity));
}

std::vector<Class_Description> Registered_Classes() {
    const std::lock_guard hold(Table().Lock);
    return Table().Classes;
}

Reference<Unknown> Create_Object(String_View program_identity) {
    return Create_First(Named(program_identity));
}

Reference<Unknown> Create_Object(const Identity& class_identity) {
    return Create_First(
        [&](const auto& description) { return description.Class_Identity == class_identity; });
}

} // namespace automation
