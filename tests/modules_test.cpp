// Modules as a host meets them: registered and found, loaded and unloaded, and refused when they should be.
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <functional>
#include <future>
#include <memory>
#include <set>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "automation/create.h"
#include "automation/interface.h"
#include "automation/text.h"
#include "classes/registration.h"
#include "temporary_folder.h"

namespace {

using namespace automation;
using namespace std::chrono_literals;
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
std::string Why_Not_Created_As(String_View name) {
    void* object = nullptr;
    return Reason_Of(AUTOMATION_RUN_TIME(429),
                     Automation_Create(name.data(), static_cast<std::uint32_t>(name.size()),
                                       &Unknown::Interface_Identity, &object));
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

// How many modules stay when those that are idle have been idle for a while.
std::int32_t Stay_Loaded() {
    Automation_Free_Unused_Modules();
    std::this_thread::sleep_for(1100ms);
    return Automation_Free_Unused_Modules();
}

class Modules : public testing::Test {
protected:
    Modules() {
        umask(022);
        Run("mkdir -m 755 user user/style-node user/style-node/classes.d machine own");
        setenv("XDG_CONFIG_HOME", (folder / "user").c_str(), 1);
        setenv("STYLE_NODE_MACHINE_CLASSES", (folder / "machine").c_str(), 1);
    }

    void Run(const std::string& command) const {
        ASSERT_EQ(std::system(("cd '" + folder.String() + "' && " + command).c_str()), 0) << command;
    }
    std::string Copy(const std::string& original, const std::string& name) const {
        std::string copy = folder / name;
        fs::copy_file(original, copy, fs::copy_options::overwrite_existing);
        fs::permissions(copy, fs::perms(0755));
        return copy;
    }
    static std::string Text_For(const std::string& module, int interface = AUTOMATION_VERSION) {
        return "Module = " + module + "\nInterface = " + std::to_string(interface) +
               "\nClass = Test.Thing {11223344-5566-7788-99AA-BBCCDDEEFF01} Apartment\n";
    }
    std::string Write_Manifest(const std::string& text, const std::string& name = "5-it.classes") const {
        return Write_File(user_classes / name, text);
    }
    static std::vector<std::string> Problems() {
        std::vector<std::string> problems;
        for (const auto& entry : classes::Registered_Classes())
            problems.push_back(entry.Problem);
        return problems;
    }

    const Temporary_Folder folder;
    const fs::path user_classes = folder / "user/style-node/classes.d";
};

TEST_F(Modules, Are_Found_In_The_Users_Folder_First_And_There_The_Last_Registered) {
    const std::string machines = Copy(GOOD_MODULE, "Machines.so");
    const std::string first = Copy(GOOD_MODULE, "own/Same.so"), second = Copy(GOOD_MODULE, "Same.so");
    const auto passed_over = [](const std::string& for_module) {
        return "passed over: " + for_module + " comes first";
    };
    const auto unregister = [](const std::string& module, Scope scope, int count) {
        return [=] { EXPECT_EQ(classes::Unregister_Module(module, scope), count); };
    };
    EXPECT_NE(Why_Not_Created().find("not registered"), std::string::npos);
    const struct {
        std::function<void()> Change;
        std::string Made_By; // empty: nobody
        std::vector<std::string> Problems;
    } steps[] = {
        {[&] { classes::Register_Module(machines, Scope::Machine); }, machines, {""}},
        {[&] { classes::Register_Module(first, Scope::User); }, first, {"", passed_over(first)}},
        {[&] { classes::Register_Module(second, Scope::User); },
         second,
         {"", passed_over(second), passed_over(second)}},
        {[&] { classes::Register_Module(first, Scope::User); },
         first,
         {"", passed_over(first), passed_over(first)}},
        {unregister(first, Scope::User, 1), second, {"", passed_over(second)}},
        {unregister(second, Scope::User, 1), machines, {""}},
        {unregister(second, Scope::User, 0), machines, {""}},
        {unregister(machines, Scope::User, 0), machines, {""}},
        {[&] { classes::Register_Module(second, Scope::User), fs::remove(second); },
         "",
         {"the module is not used: " + second + " cannot be found: No such file or directory",
          passed_over(second)}},
        {unregister(second, Scope::User, 1), machines, {""}},
        {unregister(machines, Scope::Machine, 1), "", {}},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(&step - steps);
        step.Change();
        EXPECT_EQ(Problems(), step.Problems);
        EXPECT_EQ(!classes::Explain(Thing), !step.Made_By.empty());
        if (step.Made_By.empty()) {
            EXPECT_NE(Why_Not_Created(), "");
        } else {
            EXPECT_EQ(Maker(Create_Object(Thing)), step.Made_By);
            EXPECT_EQ(Maker(Create_Object(Thing_Identity)), step.Made_By);
        }
    }
}

TEST_F(Modules, Stay_While_Something_Of_Theirs_Lives_And_A_While_Longer) {
    const std::string module = Copy(GOOD_MODULE, "Good.so");
    classes::Register_Module(module, Scope::User);
    for (int round = 0; round < 2; ++round) {
        auto object = Create_Object(Thing);
        EXPECT_EQ(Stay_Loaded(), 1) << "an object lives";
        object = nullptr;
        EXPECT_EQ(Automation_Free_Unused_Modules(), 1) << "idle only now";
        EXPECT_EQ(Automation_Free_Unused_Modules(), 1) << "idle for no time";
        std::this_thread::sleep_for(1100ms);
        Create_Object(Thing);
        EXPECT_EQ(Automation_Free_Unused_Modules(), 1) << "used in between";
        EXPECT_NE(Why_Not_Created_As(u"Test.Nothing"), "");
        EXPECT_TRUE(Is_Loaded(module)) << "a failed creation has unloaded it";
        EXPECT_EQ(Stay_Loaded(), 0);
        EXPECT_FALSE(Is_Loaded(module)) << round;
    }
}

// The last object has gone, and the thread that released it is still in the module's code.
TEST_F(Modules, Stay_While_The_Last_Release_Runs) {
    classes::Register_Module(Copy(SLOW_RELEASE_MODULE, "Slow.so"), Scope::User);
    auto object = Create_Object(Thing);
    auto release = std::async(std::launch::async, [&] { object = nullptr; });
    while (release.wait_for(0s) != std::future_status::ready)
        EXPECT_EQ(Automation_Free_Unused_Modules(), 1);
    EXPECT_EQ(Stay_Loaded(), 0);
}

TEST_F(Modules, Are_Used_And_Unloaded_By_Threads_At_Once) {
    const std::string module = Copy(GOOD_MODULE, "Good.so");
    classes::Register_Module(module, Scope::User);
    std::atomic<bool> is_over = false;
    auto free = std::async(std::launch::async, [&] {
        while (!is_over)
            Automation_Free_Unused_Modules();
    });
    std::vector<std::future<void>> users;
    for (int user = 0; user < 3; ++user)
        users.push_back(std::async(std::launch::async, [&, user] {
            for (int round = 0; round < 400; ++round) {
                Create_Object(Thing);
                if (user == 0 && round % 100 == 0)
                    classes::Register_Module(module, Scope::User);
            }
            std::this_thread::sleep_for(1100ms); // another thread unloads it
            Create_Object(Thing);
        }));
    for (auto& user : users)
        user.get();
    is_over = true;
    free.get();
    EXPECT_EQ(Stay_Loaded(), 0);
}

TEST_F(Modules, Are_Refused_With_A_Reason_That_Names_The_File) {
    const struct {
        const char *Spoil, *Named, *Reason; // the command runs in the folder
        const char* Original = GOOD_MODULE;
        bool Is_Listed = true; // with its problem; else only a creation finds it
    } cases[] = {
        {"rm own/it.so", "own/it.so", "cannot be found"},
        {"chmod o+w own/it.so", "own/it.so", "may be written by others"},
        {"chmod g+w own", "own", "may be written by others"},
        {"chmod 1777 own", "own", "may be written by others"},
        {"mkdir -p a/b; mv own a/b; ln -s a/b/own own; chmod o+w a", "a", "may be written by others"},
        {"mkdir to; mv own/it.so to; ln -s ../to/it.so own; chmod g+w to", "to", "may be written by others"},
        {"ln -sf it.so own/other.so; ln -sf other.so own/it.so", "own/it.so", "symbolic links"},
        {"rm own/it.so; mkdir -m 755 own/it.so", "own/it.so", "is not a file"},
        {"rm own/it.so; mkfifo -m 644 own/it.so", "own/it.so", "is not a file"},
        {"echo text >own/it.so", "own/it.so", "is no shared library"},
        {": >own/it.so", "own/it.so", "is no shared library"},
        {"truncate -s 8192 own/it.so", "own/it.so", "is cut off"},
        {"truncate -s 100 own/it.so", "own/it.so", "is cut off"},
        {":", "own/it.so", "Defined_Nowhere", UNDEFINED_SYMBOL_MODULE, false},
        {":", "own/it.so", "has no entry point DllCanUnloadNow", INCOMPLETE_MODULE, false},
        {":", "own/it.so", "was built for version 2 of the interface, and this is version 1",
         OTHER_VERSION_MODULE, false},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.Spoil);
        const std::string module = Copy(row.Original, "own/it.so");
        Run(row.Spoil);
        const std::string named = folder / row.Named + " ";
        const auto is_explained = [&](const std::string& reason) {
            return reason.find(named) != std::string::npos && reason.find(row.Reason) != std::string::npos;
        };
        EXPECT_PRED1(is_explained, Why_Not_Registered(module));
        EXPECT_TRUE(fs::is_empty(user_classes));
        Write_Manifest(Text_For(module));
        EXPECT_PRED1(is_explained, Why_Not_Created());
        EXPECT_EQ(is_explained(Problems().at(0)), row.Is_Listed) << Problems().at(0);
        EXPECT_EQ(classes::Unregister_Module(module, Scope::User), 1);
        EXPECT_TRUE(fs::is_empty(user_classes));
        Run("rm -rf own a to; mkdir -m 755 own");
    }
}

// What the loader would map and not find ends the process, so it must not get that far.
TEST_F(Modules, May_Be_Cut_Off_Anywhere) {
    const auto whole = fs::file_size(GOOD_MODULE);
    std::set<std::string> reasons;
    for (std::uintmax_t size = 0; size < whole; size += whole / 100) {
        const std::string module = Copy(GOOD_MODULE, "own/" + std::to_string(size) + ".so");
        fs::resize_file(module, size);
        const std::string why = Why_Not_Registered(module);
        reasons.insert(why.substr(std::min(why.rfind(' '), why.size())));
    }
    EXPECT_EQ(reasons, (std::set<std::string>{"", " anew", " library"}))
        << "without the sections it can be used";
}

TEST_F(Modules, May_Lie_Below_A_Sticky_Folder_And_Behind_A_Link) {
    Run("mkdir -m 1777 shared; mkdir -m 755 shared/own; ln -s shared/own/Good.so linked.so");
    const std::string module = Copy(GOOD_MODULE, "shared/own/Good.so");
    classes::Register_Module(folder / "linked.so", Scope::User);
    EXPECT_EQ(Maker(Create_Object(Thing)), module);
    EXPECT_EQ(classes::Unregister_Module(folder / "linked.so", Scope::User), 1);
}

// In a sticky folder anybody may have put a link.
TEST_F(Modules, Are_Not_Reached_By_A_Link_Of_Another_User) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make another user's link";
    Run("mkdir -m 1777 shared; mkdir -m 755 real; ln -s ../real shared/theirs; chown -h nobody "
        "shared/theirs");
    Copy(GOOD_MODULE, "real/Good.so");
    const std::string why = Why_Not_Registered(folder / "shared/theirs/Good.so");
    EXPECT_NE(why.find(folder / "shared/theirs belongs to another user"), std::string::npos) << why;
}

TEST_F(Modules, Are_Never_Looked_Up_By_A_Relative_Path) {
    Copy(GOOD_MODULE, "Good.so");
    const fs::path before = fs::current_path();
    fs::current_path(folder.String());
    for (const char* name : {"Good.so", "./Good.so", "../Good.so", "libstyle_platform.so.0", ""})
        EXPECT_EQ(Why_Not_Registered(name),
                  "the module \"" + std::string(name) + "\" is not named by an absolute path");
    for (const char* name : {"Good.so", "libstyle_platform.so.0", ""}) {
        Write_Manifest(Text_For(name));
        EXPECT_NE(Why_Not_Created().find("5-it.classes, line 1: names the module by no absolute path"),
                  std::string::npos);
    }
    Write_Manifest(Text_For("../../../Good.so"));
    EXPECT_EQ(Maker(Create_Object(Thing)), folder / "Good.so") << "from the manifest's own folder";
    fs::current_path(before);
}

TEST_F(Modules, Of_Another_Version_Are_Known_From_The_Manifest) {
    Write_Manifest(Text_For(Copy(GOOD_MODULE, "Good.so"), 7));
    for (const std::string& reason : {Why_Not_Created(), Problems().at(0)})
        EXPECT_NE(reason.find("version 7 of the interface, and this is version 1"), std::string::npos)
            << reason;
}

TEST_F(Modules, Of_Broken_Manifests_Are_Skipped_With_A_Reason) {
    const std::string module = Copy(GOOD_MODULE, "Good.so");
    classes::Register_Module(module, Scope::Machine);
    const std::string good = Text_For(module);
    const std::string line_3 = "5-it.classes, line 3: ";
    const auto with = [&](const std::string& old, const std::string& fresh) {
        std::string text = good;
        return text.replace(text.find(old), old.size(), fresh);
    };
    const std::pair<std::string, std::string> cases[] = {
        {"", "has to name a Module, its Interface and at least one Class"},
        {"Module = /x\nInterface = 1\n", "has to name a Module, its Interface and at least one Class"},
        {with("Module", "module"), "line 1: has to be Class"},
        {with("Interface", "Module"), "line 2: has to be Class"},
        {"# " + std::string(70000, 'x') + "\n" + good, "is larger than 64 KiB"},
        {with("= 1", "= 0"), "line 2: has no number"},
        {with("= 1", "= 99999999999"), "line 2: has no number"},
        {with(" {1", " 1"), line_3 + "has no class identity"},
        {with("{11", "{+1"), line_3 + "has no class identity"},
        {with("{11", "{1"), line_3 + "has no class identity"},
        {with("Test.Thing", std::string(256, 'x')), line_3 + "has no class's name"},
        {with("Apartment", "Neutral"), line_3 + "has none of the threading models"},
        {with("Apartment", "Apartment\r"), line_3 + "has a control character"},
        {with("Thing", "Th\033[2J"), line_3 + "has a control character"},
        {with("Thing", std::string("Th\0", 3)), line_3 + "has a control character"},
        {with("Thing", "Th\xC2\x9B"), line_3 + "has a control character"},
        {with("Thing", "Th\xFF"), line_3 + "is not UTF-8"},
    };
    for (const auto& [text, reason] : cases) {
        SCOPED_TRACE(reason);
        Write_Manifest(text);
        EXPECT_EQ(Maker(Create_Object(Thing)), module);
        const auto listed = Problems();
        ASSERT_EQ(listed.size(), 2U);
        EXPECT_NE(listed[0].find(reason), std::string::npos) << listed[0];
        EXPECT_EQ(listed[1], "");
    }
    classes::Unregister_Module(module, Scope::Machine);
    EXPECT_NE(Why_Not_Created().find("skipped: " + (user_classes / "5-it.classes").string()),
              std::string::npos);
    Write_Manifest(with("Apartment\n", "Apartment") + "\n\n  # and a remark\n \n");
    EXPECT_EQ(Maker(Create_Object(Thing)), module);
}

TEST_F(Modules, Are_Not_Registered_Under_Names_That_A_Line_Cannot_Hold) {
    const std::string good = Copy(GOOD_MODULE, "Good.so");
    for (const char* name : {"a\nClass = x.so", "escape\033[2J.so", "\xFF.so", "\xC2\x85.so", "blank.so "}) {
        const std::string why = Why_Not_Registered(Copy(GOOD_MODULE, name));
        EXPECT_NE(why.find("give it another name"), std::string::npos) << why;
    }
    EXPECT_TRUE(fs::is_empty(user_classes));
    classes::Register_Module(good, Scope::User);
    EXPECT_EQ(Problems(), std::vector<std::string>{""});
}

TEST_F(Modules, Need_A_Folder_And_Manifests_That_Can_Be_Trusted) {
    const std::string module = Copy(GOOD_MODULE, "Good.so");
    const struct {
        const char *Spoil, *Mend, *Reason;
        bool Registers = false; // the folder itself can be trusted
    } cases[] = {
        {"chmod o+w user/style-node/classes.d/1-Good.classes", "true", "may be written by others", true},
        {"chmod g+w user/style-node/classes.d", "chmod g-w user/style-node/classes.d",
         "may be written by others"},
        {"chmod o+w user/style-node", "chmod o-w user/style-node", "may be written by others"},
        {"chmod g+w user", "chmod g-w user", "may be written by others"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.Spoil);
        classes::Register_Module(module, Scope::User);
        EXPECT_EQ(Maker(Create_Object(Thing)), module);
        Run(row.Spoil);
        EXPECT_NE(Why_Not_Created().find(row.Reason), std::string::npos) << Why_Not_Created();
        EXPECT_NE(Problems().at(0).find(row.Reason), std::string::npos);
        EXPECT_EQ(Why_Not_Registered(module).find(row.Reason) == std::string::npos, row.Registers);
        Run(row.Mend);
        Run("rm -f user/style-node/classes.d/*");
    }
}

TEST_F(Modules, Are_Read_And_Written_Behind_A_Linked_Folder) {
    const std::string module = Copy(GOOD_MODULE, "Good.so");
    Run("rm -r user/style-node; mkdir -m 755 elsewhere; ln -s ../elsewhere user/style-node");
    classes::Register_Module(module, Scope::User);
    EXPECT_TRUE(fs::exists(folder / "elsewhere/classes.d/1-Good.classes"));
    EXPECT_EQ(Maker(Create_Object(Thing)), module);
    EXPECT_EQ(classes::Unregister_Module(module, Scope::User), 1);
    Run("rm -r elsewhere");
    EXPECT_NE(Why_Not_Registered(module).find(folder / "elsewhere cannot be found"), std::string::npos);
}

TEST_F(Modules, Are_Registered_For_Their_User_Alone_Under_Any_Umask) {
    for (const mode_t mask : {0000U, 0022U, 0077U}) {
        Run("rm -r user; mkdir -m 755 user");
        umask(mask);
        classes::Register_Module(GOOD_MODULE, Scope::User);
        classes::Register_Module(GOOD_MODULE, Scope::Machine);
        umask(022);
        EXPECT_EQ(fs::status(user_classes).permissions(), fs::perms(0700));
        for (const auto& [name, mode] :
             {std::pair(user_classes, 0600), std::pair(fs::path(folder / "machine"), 0644)})
            for (const auto& entry : fs::directory_iterator(name))
                EXPECT_EQ(entry.status().permissions(), fs::perms(mode)) << entry.path();
    }
}

// Every module stays registered, also with what a run that was cut off has left.
TEST_F(Modules, Are_Registered_By_Processes_At_Once) {
    constexpr int Count = 8;
    Write_File(user_classes / ".new", "half");
    std::vector<pid_t> children;
    for (int index = 0; index < Count; ++index) {
        const std::string module = Copy(GOOD_MODULE, std::to_string(index) + ".so");
        children.push_back(fork());
        if (children.back() == 0)
            _exit(Why_Not_Registered(module).empty() ? 0 : 1);
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(Problems().size(), static_cast<std::size_t>(Count));
    EXPECT_EQ(std::distance(fs::directory_iterator(user_classes), {}), Count);
}

// As a host or an installer would that loads a module itself.
TEST_F(Modules, Register_Themselves_For_Their_User) {
    const std::string module = Copy(GOOD_MODULE, "Good.so");
    const std::unique_ptr<void, int (*)(void*)> library(dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL),
                                                        dlclose);
    ASSERT_TRUE(library);
    const auto call = [&](const char* name) {
        return reinterpret_cast<Status (*)()>(dlsym(library.get(), name))();
    };
    const char16_t other[] = u"Test.Other";
    const Automation_Registration registration{other, Thing_Identity, u"Both",
                                               dlsym(library.get(), "DllRegisterServer")};
    EXPECT_EQ(call("DllRegisterServer"), AUTOMATION_OK);
    EXPECT_EQ(Automation_Register(&registration), AUTOMATION_OK);
    EXPECT_EQ(call("DllRegisterServer"), AUTOMATION_OK);
    EXPECT_EQ(Problems().size(), 2U);
    EXPECT_EQ(Maker(Create_Object(other)), module);
    EXPECT_EQ(call("DllUnregisterServer"), AUTOMATION_OK);
    EXPECT_EQ(Problems().size(), 1U);
    EXPECT_EQ(Automation_Unregister(&registration), AUTOMATION_OK);
    EXPECT_TRUE(fs::is_empty(user_classes));
    EXPECT_EQ(Automation_Unregister(&registration), AUTOMATION_OK) << "nothing is left to take away";
    Run("chmod g+w user");
    EXPECT_NE(Reason_Of(AUTOMATION_RUN_TIME(75), Automation_Register(&registration)), "");
}

// The packages bring manifests as files: they say what registering the modules says.
TEST_F(Modules, Come_With_The_Manifests_That_Registering_Them_Writes) {
    const auto lines_of = [](const std::string& path) {
        std::multiset<std::string> lines;
        std::istringstream text(Bytes_Of_File(path));
        for (std::string line; std::getline(text, line);)
            if (line.starts_with("Class ") || line.starts_with("Interface "))
                lines.insert(line);
        return lines;
    };
    const std::pair<const char*, const char*> shipped[] = {{COMPONENT, "component/KOR_STYLE_Node"},
                                                           {STAND_INS, "stores/Product_Stand_Ins"},
                                                           {WINDOW, "window/Style_Window"},
                                                           {TERMINAL, "terminal/Style_Terminal"}};
    for (const auto& [module, name] : shipped) {
        classes::Register_Module(module, Scope::User);
        const std::string manifest = std::string(SOURCES) + "/" + name + ".classes";
        EXPECT_EQ(lines_of(fs::directory_iterator(user_classes)->path()), lines_of(manifest)) << name;
        EXPECT_NE(Bytes_Of_File(manifest).find("Module = ../" + fs::path(module).filename().string() + "\n"),
                  std::string::npos);
        classes::Unregister_Module(module, Scope::User);
    }
}

// What a host itself offers is no answer to whether another host finds the class. The last of these tests: an
// offer stays.
TEST_F(Modules, Are_Explained_As_Any_Host_Finds_Them) {
    classes::Offer_Classes_Of(Copy(GOOD_MODULE, "Offered.so"));
    EXPECT_TRUE(Create_Object(Thing));
    const auto why = classes::Explain(Thing);
    EXPECT_TRUE(why && why->find("Test.Thing is not registered") != std::string::npos) << why.value_or("");
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
