#include "shell/replaced_strings.h"

#include <mutex>

namespace shell {

namespace {

std::mutex replacement_lock;
std::shared_ptr<const String_Table> replacement;

void Set_Replacement(std::shared_ptr<const String_Table> table) {
    const std::lock_guard guard(replacement_lock);
    replacement = std::move(table);
}

} // namespace

void Replace_Strings(String_Table table) {
    Set_Replacement(std::make_shared<const String_Table>(std::move(table)));
}

void Restore_Strings() {
    Set_Replacement(nullptr);
}

std::shared_ptr<const String_Table> Replaced_Strings() {
    const std::lock_guard guard(replacement_lock);
    return replacement;
}

} // namespace shell
