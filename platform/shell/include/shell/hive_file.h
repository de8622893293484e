// A hive in a file of its own: texts by key and name, read as a whole and changed key by key.
//
// Reading follows registry.h's rules. A change reads the file anew, refuses one that is broken, keeps every
// line that it does not concern, and puts a complete new file in the old one's place, so that a reader sees
// the old or the new one; several processes may change it at once. Callable from any thread.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "automation/text.h"
#include "shell/format_error.h"

namespace shell {

class Hive;

class Hive_View {
public:
    // Format_Error with the file and the line. A file that is not there is an empty hive.
    static Hive_View Load(const std::string& path);

    // The text of a value (null name: the value without one); nothing when there is no such text.
    std::optional<std::string> Text(automation::String_View key, const char* name = nullptr) const;
    // The names of the keys right below, in lower case.
    std::vector<automation::String> Names_Below(automation::String_View key) const;

private:
    std::shared_ptr<const Hive> hive; // null: empty
};

struct Hive_Text {
    automation::String Key;
    automation::String Name; // empty: the value without a name
    automation::String Text;
};

// Removes the keys with all below them, then adds the texts. The folders on the way are made for the owner
// alone; the file gets `mode`. Format_Error.
void Change_Hive(const std::string& path, const std::vector<automation::String>& removed_keys,
                 const std::vector<Hive_Text>& added, unsigned mode);

} // namespace shell
