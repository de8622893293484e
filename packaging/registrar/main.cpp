// Registers and unregisters modules for the whole machine. The packages that bring modules call it when they
// are configured and removed; a machine need not have style-editor for that.
//
//     style-node-register register MODULE...     classes that the file no longer has go
//     style-node-register unregister MODULE...   it is no error when nothing is registered
//
// Ends with 0, 1 when a module or the hive is refused, 2 for a wrong command line.
#include <iostream>
#include <span>
#include <string_view>

#include "classes/registration.h"

int main(int count, char** words) {
    const std::span arguments(words, static_cast<std::size_t>(count));
    const std::string_view action = count > 2 ? arguments[1] : "";
    if (action != "register" && action != "unregister") {
        std::cerr
            << "style-node-register: say register or unregister, and the modules by their absolute paths\n";
        return 2;
    }
    try {
        for (const char* const module : arguments.subspan(2)) {
            classes::Unregister_Module(module, classes::Scope::Machine);
            if (action == "register")
                classes::Register_Module(module, classes::Scope::Machine);
        }
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "style-node-register: " << error.what() << '\n';
        return 1;
    }
}
