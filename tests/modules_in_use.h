// How many loaded modules say that something of theirs is alive. They stay loaded for a while after that.
#pragma once

#include <dlfcn.h>
#include <link.h>

#include <string>
#include <vector>

#include "automation/abi.h"

inline int Modules_In_Use() {
    std::vector<std::string> names;
    dl_iterate_phdr(
        [](dl_phdr_info* loaded, std::size_t, void* all) {
            static_cast<std::vector<std::string>*>(all)->emplace_back(loaded->dlpi_name);
            return 0;
        },
        &names);
    int count = 0;
    for (const std::string& name : names) {
        if (name.find("/style-node/") == std::string::npos)
            continue;
        void* const module = dlopen(name.c_str(), RTLD_NOW | RTLD_NOLOAD);
        const auto can_unload = reinterpret_cast<Automation_Status (*)()>(dlsym(module, "DllCanUnloadNow"));
        count += can_unload && can_unload() != AUTOMATION_OK ? 1 : 0;
        dlclose(module);
    }
    return count;
}
