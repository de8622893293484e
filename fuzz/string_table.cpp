// String tables: what is refused names a line that is there; what is read comes back from its own texts
// written out anew.
#include "shell/string_table.h"

#include <algorithm>
#include <cstdio>

#include "require.h"

namespace {

std::string Escaped(automation::String_View text) {
    std::string escaped;
    char unit_text[8];
    for (const char16_t unit : text) {
        std::snprintf(unit_text, sizeof unit_text, "\\u%04X", unsigned{unit});
        escaped += unit_text;
    }
    return escaped;
}

std::string Written(const shell::String_Table& table) {
    std::string text;
    for (const auto id : table.Ids())
        text += std::to_string(id) + " \"" + Escaped(*table.Find(id)) + "\"\r\n";
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto lines = static_cast<std::size_t>(1 + std::count(bytes.begin(), bytes.end(), '\n'));
    try {
        const auto table = shell::String_Table::Parse(bytes);
        const auto again = shell::String_Table::Parse(Written(table));
        REQUIRE(table.Ids() == again.Ids());
        for (const auto id : table.Ids()) {
            REQUIRE(id >= 0 && *table.Find(id) == *again.Find(id));
            REQUIRE(table.Line_Of(id) >= 1 && table.Line_Of(id) <= lines);
        }
    } catch (const shell::Format_Error& error) {
        REQUIRE(error.Line >= 1 && error.Line <= lines && !error.Reason.empty());
    }
    return 0;
}
