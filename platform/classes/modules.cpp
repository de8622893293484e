#include "modules.h"

#include <dlfcn.h>
#include <map>
#include <mutex>

#include "classes/registration.h"
#include "trust.h"

namespace classes {

namespace {

struct Module {
    void* Handle;
    Entry_Points Entries;
};

struct Modules {
    std::recursive_mutex Lock;            // a module may ask for another one's class
    std::map<std::string, Module> Loaded; // by path as registered
};

Modules& Table() {
    static Modules* const table = new Modules; // modules may call at the end of the process
    return *table;
}

// Closes the library again unless it is kept.
class Library {
public:
    explicit Library(const std::string& path) : handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        if (!handle)
            throw Registration_Error("the module " + path + " cannot be loaded: " + dlerror());
    }
    ~Library() {
        if (handle)
            dlclose(handle);
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    template <typename Function>
    void Find(const std::string& path, const char* name, Function*& entry) const {
        entry = reinterpret_cast<Function*>(dlsym(handle, name));
        if (!entry)
            throw Registration_Error("the module " + path + " has no entry point " + name);
    }
    void* Keep() { return std::exchange(handle, nullptr); }

private:
    void* handle;
};

Module Load(const std::string& path) {
    if (const auto problem = Module_Distrust(path))
        throw Registration_Error(*problem);
    Library library(path);
    Entry_Points entries{};
    library.Find(path, "DllRegisterServer", entries.Register);
    library.Find(path, "DllUnregisterServer", entries.Unregister);
    library.Find(path, "DllGetClassObject", entries.Get_Class_Object);
    library.Find(path, "DllCanUnloadNow", entries.Can_Unload);
    return {library.Keep(), entries};
}

Entry_Points Find_Or_Load(Modules& table, const std::string& path) {
    auto found = table.Loaded.find(path);
    if (found == table.Loaded.end())
        found = table.Loaded.emplace(path, Load(path)).first;
    return found->second.Entries;
}

[[noreturn]] void Refuse(const std::string& path, Automation_Status status) {
    if (status == AUTOMATION_NO_INTERFACE)
        throw Registration_Error("the module " + path +
                                 " was built for another version of the interface; install one that fits");
    if (status == AUTOMATION_NO_CLASS)
        throw Registration_Error("the module " + path + " does not have the class; register it anew");
    automation::Check(status);
    throw Registration_Error("the module " + path + " gives no class object");
}

} // namespace

Entry_Points Load_Module(const std::string& path) {
    Modules& table = Table();
    const std::lock_guard hold(table.Lock);
    return Find_Or_Load(table, path);
}

// Under the lock until there is an object, so that the module cannot be unloaded in between.
Class_Object Class_Object_In(const std::string& path, const automation::Identity& class_identity) {
    Modules& table = Table();
    Class_Object object;
    Automation_Status status = AUTOMATION_OK;
    {
        const std::lock_guard hold(table.Lock);
        void* found = nullptr;
        status = Find_Or_Load(table, path)
                     .Get_Class_Object(&class_identity, &Automation_Class_Object::Interface_Identity, &found);
        if (status >= 0)
            object = Class_Object::Adopt(static_cast<Automation_Class_Object*>(found));
    }
    if (object)
        return object;
    Free_Unused_Modules();
    Refuse(path, status);
}

std::int32_t Free_Unused_Modules() {
    Modules& table = Table();
    const std::lock_guard hold(table.Lock);
    std::erase_if(table.Loaded, [](const auto& entry) {
        const Module& module = entry.second;
        return module.Entries.Can_Unload() == AUTOMATION_OK && dlclose(module.Handle) == 0;
    });
    return static_cast<std::int32_t>(table.Loaded.size());
}

} // namespace classes
