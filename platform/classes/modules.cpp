#include "modules.h"

#include <chrono>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <map>
#include <mutex>
#include <optional>
#include <unistd.h>
#include <vector>

#include "classes/registration.h"
#include "shell/trusted_file.h"

namespace classes {

namespace {

using Clock = std::chrono::steady_clock;
using automation::Identity;

struct Loaded_Module {
    Module_Hold Hold;
    std::optional<Clock::time_point> Idle_Since{}; // as a call of Free_Unused_Modules found it
};

struct Modules {
    std::mutex Lock;                             // not held while a module's code runs but DllCanUnloadNow
    std::map<std::string, Loaded_Module> Loaded; // by path without links
};

Modules& Table() {
    static Modules* const table = new Modules; // modules may call at the end of the process
    return *table;
}

bool Read_At(int file, std::uint64_t offset, void* data, std::size_t size) {
    return pread(file, data, size, static_cast<off_t>(offset)) == static_cast<ssize_t>(size);
}

// The loader maps what the file's table promises; what is not there would end the process.
const char* Problem_Of_Library(const shell::Trusted_File& file) {
    static const char* const Not_One = "is no shared library";
    static const char* const Cut_Off = "is cut off; install it anew";
    ElfW(Ehdr) header{};
    if (!Read_At(file.Get(), 0, &header, sizeof header) ||
        std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_type != ET_DYN ||
        header.e_phentsize != sizeof(ElfW(Phdr)))
        return Not_One;
    const auto size = static_cast<std::uint64_t>(file.Status().st_size);
    for (std::uint64_t at = 0; at < header.e_phnum; ++at) {
        ElfW(Phdr) part{};
        if (header.e_phoff > size ||
            !Read_At(file.Get(), header.e_phoff + at * sizeof part, &part, sizeof part) ||
            part.p_offset > size || part.p_filesz > size - part.p_offset)
            return Cut_Off;
    }
    return nullptr;
}

// Closes the library again unless it is kept.
struct Library_Closer {
    void operator()(const Module* module) const {
        dlclose(module->Handle);
        delete module;
    }
};

template <typename Function>
void Find(const std::string& path, void* handle, const char* name, Function*& entry) {
    entry = reinterpret_cast<Function*>(dlsym(handle, name));
    if (!entry)
        throw Registration_Error("the module " + path + " has no entry point " + name);
}

Module_Hold Load(const std::string& path) {
    auto module = std::make_unique<Module>();
    module->Handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module->Handle)
        throw Registration_Error("the module " + path + " cannot be loaded: " + dlerror());
    Module& made = *module;
    Module_Hold hold(module.release(), Library_Closer());
    Find(path, made.Handle, "DllRegisterServer", made.Register);
    Find(path, made.Handle, "DllUnregisterServer", made.Unregister);
    Find(path, made.Handle, "DllGetClassObject", made.Get_Class_Object);
    Find(path, made.Handle, "DllCanUnloadNow", made.Can_Unload);
    return hold;
}

Automation_Status Ask(const Module& module, const Identity& class_identity, Identity interface_identity,
                      std::uint32_t version, Class_Object& object) {
    interface_identity.D[7] = static_cast<std::uint8_t>(version);
    void* found = nullptr;
    const Automation_Status status = module.Get_Class_Object(&class_identity, &interface_identity, &found);
    if (status >= 0)
        object = Class_Object::Adopt(static_cast<Automation_Class_Object*>(found));
    return status;
}

// Which version of the interface the class objects have; 0 for none that can be named.
std::uint32_t Version_Of(const Module& module, const Identity& class_identity) {
    for (std::uint32_t version = 1; version <= UINT8_MAX; ++version)
        if (Class_Object object;
            Ask(module, class_identity, Automation_Class_Object::Interface_Identity, version, object) >= 0)
            return version;
    return 0;
}

// Whether it may go now; notes since when it is idle. Under the lock.
bool May_Go(Loaded_Module& loaded) {
    constexpr long By_The_Table = 1;
    if (loaded.Hold.use_count() > By_The_Table || loaded.Hold->Can_Unload() != AUTOMATION_OK)
        loaded.Idle_Since.reset();
    else if (!loaded.Idle_Since)
        loaded.Idle_Since = Clock::now();
    else
        return Clock::now() - *loaded.Idle_Since >= std::chrono::milliseconds(Idle_Milliseconds);
    return false;
}

} // namespace

std::string Checked_Module(const std::string& path) {
    if (!path.starts_with('/'))
        throw Registration_Error("the module \"" + path + "\" is not named by an absolute path");
    try {
        const shell::Trusted_File file(path);
        const char* const problem = file.Is_Regular() ? Problem_Of_Library(file) : "is not a file";
        if (problem)
            throw Registration_Error("the module " + file.Path() + " " + problem);
        return file.Path();
    } catch (const shell::Trust_Error& error) {
        throw Registration_Error(std::string("the module is not used: ") + error.what());
    }
}

Module_Hold Load_Module(const std::string& path) {
    Modules& table = Table();
    Module_Hold fresh; // loaded without the lock: its code may ask for another class
    for (;;) {
        {
            const std::lock_guard hold(table.Lock);
            const auto found =
                fresh ? table.Loaded.try_emplace(path, Loaded_Module{fresh}).first : table.Loaded.find(path);
            if (found != table.Loaded.end()) {
                found->second.Idle_Since.reset();
                return found->second.Hold;
            }
        }
        fresh = Load(path);
    }
}

Class_Object Class_Object_In(const Module& module, const std::string& path, const Identity& class_identity) {
    Class_Object object;
    automation::Drop_Error();
    const Automation_Status status =
        Ask(module, class_identity, Automation_Class_Object::Interface_Identity, AUTOMATION_VERSION, object);
    if (object)
        return object;
    if (status == AUTOMATION_NO_INTERFACE)
        throw Registration_Error(Other_Version(path, Version_Of(module, class_identity)));
    if (status == AUTOMATION_NO_CLASS)
        throw Registration_Error("the module " + path + " does not have the class; register it anew");
    automation::Check(status);
    throw Registration_Error("the module " + path + " gives no class object");
}

std::string Other_Version(const std::string& path, std::uint32_t version) {
    const std::string built_for = version == 0 ? "another version" : "version " + std::to_string(version);
    return "the module " + path + " was built for " + built_for + " of the interface, and this is version " +
           std::to_string(AUTOMATION_VERSION) + "; install one that fits";
}

std::int32_t Free_Unused_Modules() {
    Modules& table = Table();
    std::vector<Module_Hold> gone; // closed behind the lock
    const std::lock_guard hold(table.Lock);
    for (auto entry = table.Loaded.begin(); entry != table.Loaded.end();)
        if (May_Go(entry->second)) {
            gone.push_back(std::move(entry->second.Hold));
            entry = table.Loaded.erase(entry);
        } else {
            ++entry;
        }
    return static_cast<std::int32_t>(table.Loaded.size());
}

} // namespace classes
