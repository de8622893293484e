// Registry files: what is refused names a line that is there; what is read can be asked for by every name
// that it gives, in any case, and holds texts that end as they should.
#include "hive.h"

#include <algorithm>

#include "require.h"
#include "shell/format_error.h"

namespace {

using automation::String;

String Upper(String text) {
    for (char16_t& unit : text)
        if (unit >= u'a' && unit <= u'z')
            unit = static_cast<char16_t>(unit - u'a' + u'A');
    return text;
}

void Snapshot_Of(const shell::Hive& hive, const String& key) {
    const auto* const values = hive.Find(key);
    REQUIRE(values == hive.Find(Upper(key)));
    if (values)
        for (const auto& entry : *values)
            REQUIRE(entry.first == automation::Case_Folded(entry.first));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto lines = static_cast<std::size_t>(1 + std::count(bytes.begin(), bytes.end(), '\n'));
    try {
        const auto hive = shell::Parse_Hive(bytes);
        for (auto at = bytes.find('['); at != bytes.npos; at = bytes.find('[', at + 1))
            Snapshot_Of(*hive,
                        automation::From_UTF8_Replacing(bytes.substr(at + 1, bytes.find(']', at) - at - 1)));
    } catch (const shell::Format_Error& error) {
        REQUIRE(error.Line <= lines && !error.Reason.empty());
    }
    return 0;
}
