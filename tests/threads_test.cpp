// Two threads that edit at once, each with its own display and objects, on one store and through the modules.
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <chrono>
#include <future>
#include <thread>

#include "automation/create.h"
#include "automation/text.h"
#include "classes/registration.h"
#include "interfaces/store_keeper.h"
#include "scripts/script_display.h"
#include "temporary_folder.h"
#include "toolkit/user_input.h"
#include "transcript/job.h"

namespace {

using namespace automation;
namespace user_input = toolkit::user_input;

constexpr int Jobs = 1000;
constexpr int Nodes = 20; // half of them for each thread

bool Is_Loaded(const char* module) {
    void* const handle = dlopen(module, RTLD_NOW | RTLD_NOLOAD);
    if (handle)
        dlclose(handle);
    return handle != nullptr;
}

// One thread's editing: every job finds what the thread's last job on that node has saved.
class Desk {
public:
    explicit Desk(int first) : first(first) {
        display.On_Modal = [this](toolkit::Form& form, toolkit::Input_Driver&) { Edit(form); };
        toolkit::Set_Display(&display);
    }
    ~Desk() { toolkit::Set_Display(nullptr); }
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    void Work(int jobs) {
        for (job = 0; job < jobs && !testing::Test::HasFailure(); ++job) {
            edited = false;
            style_node::Editor editor;
            const auto outcome = host::Run_Job(editor, {.Node_Number = static_cast<Integer>(Node())});
            EXPECT_TRUE(outcome.Shown && edited && !outcome.SupervisedType_Blind)
                << Node() << " " << To_UTF8(outcome.Error_Location + u": " + outcome.Error_Description);
        }
    }

private:
    int Node() const { return first + job % (Nodes / 2); }

    void Edit(toolkit::Form& form) {
        auto control = [&](String_View name) -> toolkit::Control& { return *form.Find(name); };
        auto& field = dynamic_cast<toolkit::Text_Control&>(control(u"cmbHookFlash"));
        if (const auto saved = values.find(Node()); saved != values.end()) {
            EXPECT_EQ(To_UTF8(field.Text()), saved->second) << Node();
        }
        const std::string value = std::to_string(500 + (first + job) % 1000);
        EXPECT_FALSE(user_input::Press(control(job % 2 == 0 ? u"optFull" : u"optPartial")));
        EXPECT_FALSE(user_input::Replace(field, 0, String::npos, From_UTF8(value).value()));
        EXPECT_FALSE(user_input::Press(control(u"cmdOK")));
        EXPECT_FALSE(form.Is_Visible());
        values[Node()] = value;
        edited = true;
    }

    const int first;
    host::Script_Display display;
    int job = 0;
    bool edited = false;
    std::map<int, std::string> values; // what was saved, by node
};

class Threads : public testing::Test {
protected:
    Threads() {
        setenv("STYLE_NODE_MACHINE_CLASSES", (folder / "machine").c_str(), 1);
        setenv("XDG_DATA_HOME", folder.String().c_str(), 1);
        for (const char* module : {COMPONENT, STAND_INS})
            classes::Register_Module(module, classes::Scope::Machine);
        const auto keeper = Keeper();
        const Variant location(From_UTF8("sqlite:" + folder / "store.db").value());
        Text made;
        Check(keeper->Create(location, Nodes, made));
        Check(keeper->Open(location));
    }
    ~Threads() override { unsetenv("STYLE_NODE_MACHINE_CLASSES"); }

    static Reference<interfaces::Store_Keeper> Keeper() {
        return Create_Bound<interfaces::Store_Keeper>(interfaces::Store_Keeper::Program_Identity);
    }
    template <typename... Body>
    static void On_Threads(Body... body) {
        for (auto& work : {std::async(std::launch::async, body)...})
            work.wait();
    }

    const Temporary_Folder folder;
};

TEST_F(Threads, Edit_At_Once_And_Leave_Nothing_Loaded) {
    const auto work = [](int first, int jobs) { return [=] { Desk(first).Work(jobs); }; };
    On_Threads(work(1, Jobs), work(1 + Nodes / 2, Jobs));
    Automation_Boolean closed = AUTOMATION_FALSE;
    Check(Keeper()->Close(closed));
    EXPECT_EQ(closed, AUTOMATION_TRUE);
    for (int again = 0; again < 2; ++again) {
        Automation_Free_Unused_Modules();
        std::this_thread::sleep_for(std::chrono::milliseconds(1100)); // as long as they have to be idle
        EXPECT_EQ(Automation_Free_Unused_Modules(), 0);
        EXPECT_FALSE(Is_Loaded(COMPONENT) || Is_Loaded(STAND_INS));
        On_Threads(work(1, 1)); // loads them again, and the user's own store
        Check(Keeper()->Close(closed));
    }
}

TEST_F(Threads, Keep_To_Their_Objects) {
    const auto editor =
        automation::Create_Bound<style_node::_Busyness_Rules>(style_node::_Busyness_Rules::Program_Identity);
    On_Threads([&] {
        Text text;
        Long code = 0;
        Automation_Boolean answer = AUTOMATION_TRUE;
        Variant result;
        EXPECT_EQ(editor->Get_ErrLocation(text), AUTOMATION_WRONG_THREAD);
        EXPECT_EQ(editor->Get_ErrCode(code), AUTOMATION_WRONG_THREAD);
        EXPECT_EQ(editor->Get_ErrDescription(text), AUTOMATION_WRONG_THREAD);
        EXPECT_EQ(editor->Get_SupervisedType_Blind(answer), AUTOMATION_WRONG_THREAD);
        EXPECT_EQ(editor->Put_SupervisedType_Blind(answer), AUTOMATION_WRONG_THREAD);
        EXPECT_EQ(editor->Get_Editing_Default_Node(answer), AUTOMATION_WRONG_THREAD);
        EXPECT_EQ(editor->Shown(1, 1, 1, 1, AUTOMATION_FALSE, answer), AUTOMATION_WRONG_THREAD);
        EXPECT_EQ(answer, AUTOMATION_FALSE);
        EXPECT_EQ(editor->Invoke(2, AUTOMATION_PROPERTY_GET, nullptr, nullptr, nullptr),
                  AUTOMATION_WRONG_THREAD);
        EXPECT_EQ(Take_Error()->Number, AUTOMATION_WRONG_THREAD);
    });
    Automation_Boolean blind = AUTOMATION_TRUE;
    Check(editor->Get_SupervisedType_Blind(blind));
    EXPECT_EQ(blind, AUTOMATION_FALSE) << "a refused call has changed the object";
}

// The system gives the identifier of a thread that has ended to the next one.
TEST_F(Threads, Are_Not_Taken_For_Those_That_Have_Ended) {
    Reference<style_node::_Busyness_Rules> editor;
    std::thread::id owner;
    std::thread([&] {
        owner = std::this_thread::get_id();
        editor = automation::Create_Bound<style_node::_Busyness_Rules>(
            style_node::_Busyness_Rules::Program_Identity);
    }).join();
    bool is_same = false;
    for (int attempt = 0; attempt < 100 && !is_same; ++attempt)
        std::thread([&] {
            is_same = std::this_thread::get_id() == owner;
            Long code = 0;
            EXPECT_EQ(editor->Get_ErrCode(code), AUTOMATION_WRONG_THREAD);
        }).join();
    EXPECT_TRUE(is_same) << "no thread has got the identifier again";
}

// A host without the product's components: the record has its published texts, the error object the reason.
TEST_F(Threads, Are_Told_Which_Class_Is_Missing) {
    host::Script_Display display;
    toolkit::Set_Display(&display);
    classes::Unregister_Module(STAND_INS, classes::Scope::Machine);
    style_node::Editor editor;
    EXPECT_FALSE(editor.Shown(1, 1, 1));
    EXPECT_EQ(editor.ErrCode(), 91);
    EXPECT_EQ(To_UTF8(editor.ErrDescription()), "Object variable or With block variable not set");
    const std::string reason = To_UTF8(editor.Reason());
    EXPECT_NE(reason.find(" is not registered; install style-editor"), std::string::npos) << reason;
    toolkit::Set_Display(nullptr);
}

} // namespace
