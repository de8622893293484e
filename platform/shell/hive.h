// The keys and values of a registry, and their reader. A hive that is complete never changes and may then be
// shared between threads.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "automation/text.h"

namespace shell {

struct Registry_Value {
    std::uint32_t Type;
    std::string Bytes; // as the 8-bit functions give them
};

class Hive {
public:
    // By folded name; the value without a name has the empty one.
    using Values = std::map<automation::String, Registry_Value>;

    // `path` begins with the name of a predefined key; the keys on the way there exist with it.
    Values& Make_Key(automation::String_View path);
    void Remove_Key(automation::String_View path); // with all keys below it
    // Null when there is no such key.
    const Values* Find(automation::String_View path) const;

private:
    // By folded path from the predefined key. A key that only has others below it need not stand here: a
    // long path would otherwise cost the square of its length.
    std::map<automation::String, Values> keys;
};

// Failure: Format_Error without a file name.
std::shared_ptr<const Hive> Parse_Hive(std::string_view bytes);

} // namespace shell
