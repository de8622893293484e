// Manifests of modules: what is refused names a line that is there; what is read can be written, and is then
// read as the same.
#include "manifest.h"

#include <algorithm>

#include "require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto lines = static_cast<std::size_t>(1 + std::count(bytes.begin(), bytes.end(), '\n'));
    try {
        const classes::Manifest manifest = classes::Parse_Manifest(bytes);
        const std::string text = classes::Manifest_Text(manifest);
        REQUIRE(classes::Manifest_Text(classes::Parse_Manifest(text)) == text);
        REQUIRE(std::none_of(text.begin(), text.end(),
                             [](char byte) { return byte != '\n' && byte >= 0 && byte < ' '; }));
    } catch (const shell::Format_Error& error) {
        REQUIRE(error.Line <= lines && !error.Reason.empty());
    }
    return 0;
}
