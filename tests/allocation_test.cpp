// The whole editor when memory runs out: any one allocation of a run fails. The run ends with a status,
// nothing is leaked, and the next run in the same process is as if nothing had been.
//
// STYLE_NODE_LONG_FAULTS=1 fails every allocation instead of a selection (tests/long-faults).
#include <atomic>
#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "automation/create.h"
#include "automation/unknown.h"
#include "editor_session.h"
#include "modules_in_use.h"
#include "recordset/recordset.h"
#include "run_setup/setup.h"
#include "scripts/script_display.h"
#include "sqlite_rows.h"
#include "style_node/editor.h"

namespace {

std::atomic<bool> counting{false};
std::atomic<long> count{0};
std::atomic<long> fails_at{0};
std::atomic<bool> stays_out{false}; // every later one fails too

void* Allocated(std::size_t size) {
    if (counting && (++count == fails_at || (stays_out && fails_at != 0 && count > fails_at)))
        throw std::bad_alloc();
    if (void* block = std::malloc(size ? size : 1))
        return block;
    throw std::bad_alloc();
}

} // namespace

// Of the whole process, modules and libraries included.
void* operator new(std::size_t size) {
    return Allocated(size);
}
void* operator new[](std::size_t size) {
    return Allocated(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return Allocated(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}

namespace {

namespace fs = std::filesystem;

// What a person does in the first dialog, if it comes up.
struct Step {
    automation::String_View Control;
    automation::String_View Text; // empty: pressed
};
constexpr Step Steps[] = {
    {u"optEnhanced", {}}, {u"txtDescription", u"saved"}, {u"cmbHookFlash", u"x"}, {u"cmdNext", {}},
    {u"optBlind", {}},    {u"cmbRingOn", u"3000"},       {u"cmdApply", {}},       {u"cmdFirst", {}},
    {u"cmdOK", {}}};

void Act(toolkit::Form& form, toolkit::Input_Driver& driver) {
    for (const Step& step : Steps) {
        if (!form.Is_Visible())
            return;
        toolkit::Control& control = *form.Find(step.Control);
        if (step.Text.empty())
            (void)driver.Press(control);
        else
            (void)driver.Replace(control, 0, automation::String::npos, step.Text);
    }
    if (form.Is_Visible())
        (void)driver.Close(form);
}

struct Played {
    enum class End { Shown, Recorded, Not_Created } Ended; // of the first job
    stores_test::Rows Store;                               // what is in it
    long Allocations;
};

class Allocation : public ::testing::Test {
protected:
    Allocation() {
        fs::copy_file(Path(), session.Folder() / "pristine.db");
        options.Store = session.Store();
        options.App_Data = session.Folder().string();
    }
    fs::path Path() const { return session.Folder() / "store.db"; }

    // A host with two jobs on a fresh store, with the allocation of that number failing; 0: none.
    Played Play(long failing) {
        fs::copy_file(session.Folder() / "pristine.db", Path(), fs::copy_options::overwrite_existing);
        Played played{Played::End::Not_Created, {}, 0};
        count = 0;
        fails_at = failing;
        counting = true;
        try {
            played.Ended = Jobs();
        } catch (const std::exception&) { // the host's own: nothing of the editor's comes out of Shown
        }
        counting = false;
        played.Allocations = count;
        played.Store = Dumped();
        return played;
    }

private:
    Played::End Jobs() {
        host::Setup setup(options, transcript);
        setup.Start();
        host::Script_Display display;
        display.On_Modal = Act;
        for (int answers = 0; answers < 4; ++answers)
            display.Queue_Answer(toolkit::answer::Save);
        display.Answer_To_Close();
        toolkit::Set_Display(&display);
        const auto end = [](void*) {
            toolkit::Discard_All_Forms();
            toolkit::Set_Display(nullptr);
        };
        const std::unique_ptr<void, decltype(end)> at_end(&display, end);
        style_node::Editor editor;
        bool shown = false;
        bool left = false;
        try {
            shown = editor.Shown(1, 2, 7);
            EXPECT_TRUE(shown || editor.ErrCode() != 0) << "a job that failed without an error";
            editor.Shown(1, 2, 0);
        } catch (...) {
            left = true;
        }
        EXPECT_FALSE(left) << "a failure has escaped to the host";
        return shown ? Played::End::Shown : Played::End::Recorded;
    }

    stores_test::Rows Dumped() const {
        std::string text;
        EXPECT_EQ(stores_test::SQL(Path(), "PRAGMA integrity_check"), (stores_test::Rows{{"ok"}}));
        stores_test::Rows rows;
        for (const char* select : {"SELECT * FROM style_node", "SELECT * FROM full_detail",
                                   "SELECT * FROM enhanced_detail", "SELECT label FROM node_entry"})
            for (const auto& row : stores_test::SQL(Path(), select))
                rows.push_back(row);
        return rows;
    }

    Editor_Session session;
    host::Common_Options options;
    std::ostringstream unused;
    host::Transcript transcript{unused};
};

class Memory : public Allocation, public ::testing::WithParamInterface<bool> {};
INSTANTIATE_TEST_SUITE_P(That, Memory, ::testing::Values(false, true),
                         [](const auto& how) { return how.param ? "Stays_Out" : "Runs_Out_Once"; });

TEST_P(Memory, May_Run_Out_Anywhere) {
    stays_out = GetParam();
    Play(0); // what is made once per process
    const Played whole = Play(0);
    ASSERT_EQ(whole.Ended, Played::End::Shown);
    ASSERT_GT(whole.Allocations, 1000);
    const long step = std::getenv("STYLE_NODE_LONG_FAULTS") ? 1 : std::max(1L, whole.Allocations / 400);
    std::map<Played::End, int> ends;
    for (long failing = 1; failing <= whole.Allocations; failing += step) {
        SCOPED_TRACE("allocation " + std::to_string(failing) + " of " + std::to_string(whole.Allocations));
        ++ends[Play(failing).Ended];
        ASSERT_EQ(automation::Live_Objects(), 0);
        ASSERT_EQ(Modules_In_Use(), 0);
        const Played next = Play(0);
        ASSERT_EQ(next.Ended, whole.Ended) << "the failure has left something behind";
        ASSERT_EQ(next.Store, whole.Store);
    }
    EXPECT_GT(ends[Played::End::Recorded], 0) << "no failure reached the component";
    EXPECT_GT(ends[Played::End::Not_Created], 0) << "no failure reached the host";
    stays_out = false;
}

TEST(Memory_That_Runs_Out, Leaves_A_Streams_Text_And_An_Empty_Buffer) {
    const auto without_memory = [](const auto& action) {
        count = 0;
        fails_at = 1;
        counting = stays_out = true;
        action();
        counting = stays_out = false;
    };
    recordset::Offer_Classes();
    const automation::String lent(100, u'x');
    const auto stream = automation::Create_Bound<recordset::Stream>(recordset::Stream_Program_Identity);
    stream->Open();
    stream->Borrow_Text(lent);
    without_memory([&] { EXPECT_THROW(stream->Write_Text(u"y"), std::bad_alloc); });
    stream->Set_Position(0);
    EXPECT_EQ(stream->Rest(), lent);

    char buffer[] = "what was there";
    Automation_Block* const text = automation::Text(lent).Detach();
    without_memory([&] { EXPECT_EQ(Automation_To_UTF8(text, buffer, sizeof buffer), 0U); });
    EXPECT_STREQ(buffer, "");
    Automation_Free(text);
}

} // namespace
