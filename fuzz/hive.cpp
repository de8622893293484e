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

void Look_At(const shell::Hive& hive, const String& key, int depth) {
    const auto* const values = hive.Find(key);
    REQUIRE(values && values == hive.Find(Upper(key)));
    for (const auto& entry : *values)
        REQUIRE(entry.first == automation::Case_Folded(entry.first));
    String before;
    for (const auto& name : hive.Names_Below(key)) {
        REQUIRE(!name.empty() && (before.empty() || name != before));
        before = name;
        if (depth > 0)
            Look_At(hive, key + u"\\" + name, depth - 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto lines = static_cast<std::size_t>(1 + std::count(bytes.begin(), bytes.end(), '\n'));
    try {
        const auto hive = shell::Parse_Hive(bytes);
        for (const auto* root : {u"hkey_local_machine", u"hkey_current_user", u"hkey_classes_root"})
            if (hive->Find(root))
                Look_At(*hive, root, 3);
            else
                REQUIRE(hive->Names_Below(root).empty());
    } catch (const shell::Format_Error& error) {
        REQUIRE(error.Line <= lines && !error.Reason.empty());
    }
    return 0;
}
