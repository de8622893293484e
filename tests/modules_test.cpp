// Modules as a host meets them: registered and found, loaded and unloaded, and refused when they should be.
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <memory>
#include <set>
#include <sys/stat.h>

#include "automation/create.h"
#include "automation/interface.h"
#include "automation/text.h"
#include "classes/registration.h"
#include "temporary_folder.h"

namespace {

using namespace automation;
using classes::Scope;
namespace fs = std::filesystem;

constexpr String_View Thing = u"Test.Thing";
constexpr Identity Thing_Identity{
    0x11223344, 0x5566, 0x7788, {0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF, 0x01}};

bool Is_Loaded(const std::string& module) {
    void* const handle = dlopen(module.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle)
        dlclose(handle);
    return handle != nullptr;
}

// Which module has made the object.
std::string Maker(const Reference<Unknown>& object) {
    Dl_info info{};
    dladdr(*reinterpret_cast<void**>(object.Get()), &info);
    return info.dli_fname;
}

std::string Why_Not_Registered(const std::string& module, Scope scope = Scope::User) {
    try {
        classes::Register_Module(module, scope);
        return "";
    } catch (const classes::Registration_Error& error) {
        return error.what();
    }
}

// What the functions answer to a host in C: the status and the error's reason.
std::string Reason_Of(Status expected, Status status) {
    EXPECT_EQ(status, expected);
    const auto error = Take_Error();
    EXPECT_TRUE(error && Status_Of(error->Number) == status);
    return error ? To_UTF8(error->Reason) : "";
}
std::string Why_Not_Created() {
    constexpr Status refused = AUTOMATION_RUN_TIME(429);
    void* object = &object;
    std::string reason = Reason_Of(
        refused, Automation_Create(Thing.data(), Thing.size(), &Unknown::Interface_Identity, &object));
    EXPECT_EQ(object, nullptr);
    EXPECT_NE(Reason_Of(refused, Automation_Create_By_Identity(&Thing_Identity, &Unknown::Interface_Identity,
                                                               &object)),
              "");
    return reason;
}

class Modules : public testing::Test {
protected:
    Modules() {
        umask(022);
        Run("mkdir -m 755 user user/style-node machine own");
        setenv("XDG_CONFIG_HOME", (folder / "user").c_str(), 1);
        setenv("STYLE_NODE_MACHINE_HIVE", machine_hive.c_str(), 1);
    }
    ~Modules() override { EXPECT_EQ(Automation_Free_Unused_Modules(), 0); }

    void Run(const std::string& command) const {
        ASSERT_EQ(std::system(("cd '" + folder.String() + "' && " + command).c_str()), 0) << command;
    }
    std::string Copy(const std::string& original, const std::string& name) const {
        std::string copy = folder / name;
        fs::copy_file(original, copy, fs::copy_options::overwrite_existing);
        fs::permissions(copy, fs::perms(0755));
        return copy;
    }
    void Write_Hive(const std::string& module) const {
        Write_File(user_hive, "REGEDIT4\n\n[HKEY_CURRENT_USER\\Software\\Classes\\Test.Thing\\CLSID]\n"
                              "@=\"{11223344-5566-7788-99AA-BBCCDDEEFF01}\"\n\n"
                              "[HKEY_CURRENT_USER\\Software\\Classes\\CLSID\\{11223344-5566-7788-99AA-"
                              "BBCCDDEEFF01}\\InprocServer32]\n@=\"" +
                                  module + "\"\n");
    }

    const Temporary_Folder folder;
    const std::string user_hive = folder / "user/style-node/classes.reg";
    const std::string machine_hive = folder / "machine/classes.reg";
};

TEST_F(Modules, Are_Found_In_The_Users_Hive_First) {
    const std::string users = Copy(GOOD_MODULE, "Users.so");
    const std::string machines = Copy(GOOD_MODULE, "Machines.so");
    EXPECT_NE(Why_Not_Created().find("not registered"), std::string::npos);
    const struct {
        std::function<void()> Change;
        std::string Made_By; // empty: nobody
        std::vector<std::string> Problems;
    } steps[] = {
        {[&] { classes::Register_Module(machines, Scope::Machine); }, machines, {""}},
        {[&] { classes::Register_Module(users, Scope::User); },
         users,
         {"", "passed over: " + users + " comes first"}},
        {[&] { EXPECT_EQ(classes::Unregister_Module(users, Scope::User), 1); }, machines, {""}},
        {[&] { EXPECT_EQ(classes::Unregister_Module(users, Scope::User), 0); }, machines, {""}},
        {[&] { EXPECT_EQ(classes::Unregister_Module(machines, Scope::Machine), 1); }, "", {}},
        {[&] { classes::Register_Module(users, Scope::User), fs::remove(users); },
         "",
         {"the module " + users + " cannot be found: No such file or directory"}},
        {[&] { EXPECT_EQ(classes::Unregister_Module(users, Scope::User), 1); }, "", {}},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(&step - steps);
        step.Change();
        std::vector<std::string> problems;
        for (const auto& entry : classes::Registered_Classes())
            problems.push_back(entry.Problem);
        EXPECT_EQ(problems, step.Problems);
        if (step.Made_By.empty()) {
            EXPECT_NE(Why_Not_Created(), "");
        } else {
            EXPECT_EQ(Maker(Create_Object(Thing)), step.Made_By);
            EXPECT_EQ(Maker(Create_Object(Thing_Identity)), step.Made_By);
        }
        Automation_Free_Unused_Modules();
    }
}

TEST_F(Modules, Stay_While_Something_Of_Theirs_Lives) {
    const std::string module = Copy(GOOD_MODULE, "Good.so");
    classes::Register_Module(module, Scope::User);
    EXPECT_FALSE(Is_Loaded(module)) << "registering leaves it loaded";
    for (int round = 0; round < 3; ++round) {
        auto object = Create_Object(Thing);
        void* const handle = dlopen(module.c_str(), RTLD_NOW | RTLD_NOLOAD);
        ASSERT_NE(handle, nullptr);
        const auto can_unload = reinterpret_cast<Status (*)()>(dlsym(handle, "DllCanUnloadNow"));
        EXPECT_EQ(can_unload(), AUTOMATION_NO);
        EXPECT_EQ(Automation_Free_Unused_Modules(), 1);
        object = nullptr;
        EXPECT_EQ(can_unload(), AUTOMATION_OK);
        dlclose(handle);
        EXPECT_EQ(Automation_Free_Unused_Modules(), 0);
        EXPECT_FALSE(Is_Loaded(module)) << round;
    }
}

TEST_F(Modules, Are_Refused_With_A_Reason_That_Names_The_File) {
    const struct {
        const char *Spoil, *Named, *Reason; // the command runs in the folder
        const char* Original = GOOD_MODULE;
        bool Registers = false;
    } cases[] = {
        {"rm own/it.so", "own/it.so", "cannot be found"},
        {"chmod o+w own/it.so", "own/it.so", "may be written by others"},
        {"chmod g+w own", "own", "may be written by others"},
        {"mkdir to; mv own/it.so to; ln -s ../to/it.so own; chmod g+w to", "to", "may be written by others"},
        {"ln -sf it.so own/other.so; ln -sf other.so own/it.so", "own/it.so", "symbolic links"},
        {"rm own/it.so; mkdir -m 755 own/it.so", "own/it.so", "is not a file"},
        {"echo text >own/it.so", "own/it.so", "cannot be loaded"},
        {":", "own/it.so", "Defined_Nowhere", UNDEFINED_SYMBOL_MODULE},
        {":", "own/it.so", "has no entry point DllCanUnloadNow", INCOMPLETE_MODULE},
        {":", "own/it.so", "another version of the interface", OTHER_VERSION_MODULE, true},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.Spoil);
        const std::string module = Copy(row.Original, "own/it.so");
        Run(row.Spoil);
        const std::string named = folder / row.Named + " ";
        const auto is_explained = [&](const std::string& reason) {
            return reason.find(named) != std::string::npos && reason.find(row.Reason) != std::string::npos;
        };
        if (const std::string why = Why_Not_Registered(module); !row.Registers) {
            EXPECT_PRED1(is_explained, why);
            EXPECT_FALSE(fs::exists(user_hive));
        }
        Write_Hive(module);
        EXPECT_PRED1(is_explained, Why_Not_Created());
        EXPECT_FALSE(Is_Loaded(module));
        EXPECT_EQ(Automation_Free_Unused_Modules(), 0);
        Run("chmod 755 own; rm -rf own/*.so to user/style-node/classes.reg");
    }
}

TEST_F(Modules, Are_Never_Looked_Up_By_A_Relative_Path) {
    Copy(GOOD_MODULE, "Good.so");
    const fs::path before = fs::current_path();
    fs::current_path(folder.String());
    for (const char* name : {"Good.so", "./Good.so", "../Good.so", "libstyle_platform.so.0", ""}) {
        const std::string reason =
            "the module \"" + std::string(name) + "\" is not named by an absolute path";
        EXPECT_EQ(Why_Not_Registered(name), reason);
        Write_Hive(name);
        EXPECT_EQ(Why_Not_Created(), reason);
    }
    fs::current_path(before);
}

TEST_F(Modules, Need_A_Hive_That_Can_Be_Trusted_And_Read) {
    const std::string module = Copy(GOOD_MODULE, "Good.so");
    const std::pair<const char*, const char*> cases[] = {
        {"chmod o+w user/style-node/classes.reg", "may be written by others"},
        {"chmod g+w user/style-node", "may be written by others"},
        {"sed -i '2s/.*/no key/' user/style-node/classes.reg", "classes.reg, line 2:"},
    };
    for (const auto& [spoil, wanted] : cases) {
        SCOPED_TRACE(spoil);
        Write_Hive(module);
        EXPECT_EQ(Maker(Create_Object(Thing)), module);
        Run(spoil);
        const std::string bytes = Bytes_Of_File(user_hive);
        const Automation_Registration registration{Thing.data(), Thing_Identity, u"Both", &Thing_Identity};
        for (const std::string& reason :
             {Why_Not_Created(), Why_Not_Registered(module),
              Reason_Of(AUTOMATION_RUN_TIME(75), Automation_Register(&registration))}) {
            EXPECT_NE(reason.find(folder / "user/style-node"), std::string::npos) << reason;
            EXPECT_NE(reason.find(wanted), std::string::npos) << reason;
        }
        EXPECT_EQ(Bytes_Of_File(user_hive), bytes) << "a refused hive has been changed";
        Run("chmod 755 user/style-node; rm user/style-node/classes.reg");
    }
}

// Name and version of each symbol that a library offers.
std::set<std::string> Exports(const std::string& library) {
    const std::string command = "nm -D --defined-only --with-symbol-versions '" + library + "'";
    const std::unique_ptr<FILE, int (*)(FILE*)> out(popen(command.c_str(), "r"), pclose);
    std::set<std::string> symbols;
    std::array<char, 8192> line{};
    while (out && std::fgets(line.data(), line.size(), out.get())) {
        const std::string text = line.data();
        symbols.insert(text.substr(text.rfind(' ') + 1, text.size() - text.rfind(' ') - 2));
    }
    return symbols;
}
std::set<std::string> Reviewed(const std::string& list) {
    std::istringstream lines(Bytes_Of_File(EXPORTS "/" + list));
    return {std::istream_iterator<std::string>(lines), {}};
}

// In one of the five namespaces, and of this build's version.
bool Is_Private(const std::string& symbol) {
    if (symbol.find("@@STYLE_PLATFORM_PRIVATE_") == std::string::npos)
        return false;
    for (const std::string part : {"10automation", "7classes", "9recordset", "5shell", "7toolkit"})
        for (const char* kind : {"_ZN", "_ZNK", "_ZNO", "_ZTVN", "_ZTIN", "_ZTSN"})
            if (symbol.starts_with(kind + part))
                return true;
    return false;
}

TEST(Exported_Symbols, Are_The_Reviewed_Ones) {
    for (const char* module : {COMPONENT, STAND_INS, WINDOW})
        EXPECT_EQ(Exports(module), Reviewed("module.txt")) << module;
    std::set<std::string> published;
    for (const std::string& symbol : Exports(PLATFORM))
        if (const auto version = symbol.find("@@STYLE_AUTOMATION_1"); version != std::string::npos)
            published.insert(symbol.substr(0, version));
        else // or one of the versions themselves
            EXPECT_TRUE(Is_Private(symbol) || symbol.starts_with("STYLE_")) << symbol;
    EXPECT_EQ(published, Reviewed("platform.txt"));
}

} // namespace
