#include "store_choice.h"

#include <cstdlib>
#include <filesystem>

#include "host/setup.h"

namespace host {

namespace {

using stores::Store;
using stores::Store_Error;

// A relative path in XDG_DATA_HOME does not count.
std::filesystem::path Data_Folder() {
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data == '/')
        return data;
    if (const char* home = std::getenv("HOME"); home && *home == '/')
        return std::filesystem::path(home) / ".local" / "share";
    throw Start_Error("there is no home folder for your own store; set HOME or name a store with --store");
}

std::string Own_Store() {
    return "sqlite:" + (Data_Folder() / "style-editor" / "store.db").string();
}

std::shared_ptr<Store> Open_Or_Create(const std::string& name) {
    try {
        return Store::Open(name);
    } catch (const Store_Error& error) {
        if (error.Why != Store_Error::Reason::Missing)
            throw;
    }
    try {
        return Store::Create(name);
    } catch (const Store_Error& error) {
        if (error.Why != Store_Error::Reason::Already_There) // another run was faster
            throw;
    }
    return Store::Open(name);
}

} // namespace

std::shared_ptr<Store> Open_Store(const std::optional<std::string>& name) {
    try {
        return name ? Store::Open(*name) : Open_Or_Create(Own_Store());
    } catch (const Store_Error& error) {
        throw Start_Error(error.what());
    }
}

std::string Create_Store(const Store_Init_Command& command) {
    std::string name = command.Store ? *command.Store : Own_Store();
    try {
        Store::Create(name, command.Nodes);
    } catch (const Store_Error& error) {
        throw Start_Error(error.what());
    }
    return name;
}

} // namespace host
