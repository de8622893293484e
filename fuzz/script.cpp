// Editing scripts: every command that is understood says where it stands, and means the same when its line is
// read alone; what is refused names a line that is there.
#include <algorithm>
#include <iterator>

#include "require.h"
#include "scripts/script.h"
#include "style_node/control_names.h"

namespace {

bool Same(const host::Argument& left, const host::Argument& right) {
    return left.Text == right.Text && left.Number == right.Number;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<host::String> controls(std::begin(style_node::Control_Names),
                                                    std::end(style_node::Control_Names));
    const std::string_view script(reinterpret_cast<const char*>(data), size);
    const auto last = 1 + std::count(script.begin(), script.end(), '\n');
    int line = 0;
    try {
        for (const auto& command : host::Parse_Script(script, controls)) {
            REQUIRE(command.Line > line && command.Line <= last);
            line = command.Line;
            if (command.Written.ends_with(u'\r'))
                continue; // alone, that would be a part of its line's end
            const auto alone = host::Parse_Script(automation::To_UTF8(command.Written), controls);
            REQUIRE(alone.size() == 1 && alone[0].Written == command.Written);
            REQUIRE(alone[0].Action == command.Action);
            REQUIRE(std::equal(alone[0].Arguments.begin(), alone[0].Arguments.end(),
                               command.Arguments.begin(), command.Arguments.end(), Same));
        }
    } catch (const host::Script_Error& error) {
        REQUIRE(error.Line >= 1 && error.Line <= last);
        const std::string start = "line " + std::to_string(error.Line) + ": ";
        REQUIRE(std::string_view(error.what()).starts_with(start));
    }
    return 0;
}
