// Generated scripts, with every call of a component failing in every way that a component can fail: nothing
// crashes or leaks, nothing changes before the fault, and what can be seen of it is recorded.
//
// STYLE_NODE_LONG_FAULTS=1 plays 40 scripts instead of a few (tests/long-faults).
#include <array>
#include <cstdlib>
#include <random>

#include <gtest/gtest.h>

#include "automation/unknown.h"
#include "editor_session.h"
#include "modules_in_use.h"

namespace {

namespace fs = std::filesystem;

std::size_t Scripts() {
    return std::getenv("STYLE_NODE_LONG_FAULTS") ? 40 : 8;
}

// A job or two of a person who clicks and types anything.
class Generator {
public:
    explicit Generator(unsigned seed) : random(seed) {}

    std::string Script() {
        std::string script;
        for (std::size_t job = 0, jobs = 1 + Below(2); job < jobs; ++job) {
            script += "shown 1 2 " + One_Of({"0", "3", "7", "9"}) + "\n";
            for (std::size_t step = 0, steps = 6 + Below(10); step < steps; ++step)
                script += Step() + "\n";
            script += "answer " + Answer() + "\n" + One_Of({"click cmdOK", "close", "key Escape"}) +
                      "\nanswer discard\nclose\n";
        }
        return script;
    }

private:
    std::size_t Below(std::size_t end) { return random() % end; }
    std::string One_Of(const std::vector<std::string>& choices) { return choices[Below(choices.size())]; }
    std::string Answer() { return One_Of({"save", "discard", "cancel"}); }
    std::string Number() { return std::to_string(Below(6)); }

    std::string Step() {
        switch (Below(9)) {
        case 0:
            return "click " + One_Of({"optBlind", "optPartial", "optFull", "optDialContinue", "optEnhanced"});
        case 1:
        case 2:
            return "click cmdApply";
        case 3:
        case 4:
            return "answer " + Answer() + "\nclick " +
                   One_Of({"cmdFirst", "cmdPrevious", "cmdNext", "cmdLast"});
        case 5:
            return "answer " + Answer() + "\npick cmbNode " + Number();
        case 6:
            return "pick " + One_Of({"cmbThreshold", "cmbRingOn", "cmbBusyRetry"}) + " " + Number();
        case 7:
            return "paste " +
                   One_Of({"cmbHookFlash 9999", "txtTransfer 12#", "txtDescription new", "cmbRingOff x"});
        default:
            return "focus " + One_Of({"cmbRingOn", "txtRetrieve", "txtDescription"});
        }
    }

    std::mt19937 random;
};

// What a call of a component is in a transcript; empty for every other line.
std::string Operation_Of(const Line& line) {
    if (line.at("event") == "box" && line.at("by") == "product")
        return "Show_Box";
    return line.value("operation", "");
}

class Fault_Sweep : public ::testing::TestWithParam<std::size_t> {
protected:
    Fault_Sweep() {
        fs::copy_file(session.Folder() / "store.db", session.Folder() / "pristine.db");
        junk = session.File("junk", "<xml");
    }

    Lines Play(const std::string& script, std::vector<std::string> options) {
        fs::copy_file(session.Folder() / "pristine.db", session.Folder() / "store.db",
                      fs::copy_options::overwrite_existing);
        options.emplace_back("--trace");
        Lines lines = session.Play(script, options);
        for (Line& line : lines)
            if (line.value("operation", "") == "Update_Node_Entry")
                line["arguments"][1] = "now";
        // A save question that fails keeps the dialog up.
        const bool stayed_up = session.Errors().find("the dialog stayed up") != std::string::npos;
        EXPECT_EQ(session.Status(), stayed_up ? 3 : 0) << session.Errors();
        EXPECT_TRUE(!stayed_up || options[1].starts_with("Show_Box@")) << options[1];
        EXPECT_EQ(automation::Live_Objects(), 0);
        EXPECT_EQ(Modules_In_Use(), 0);
        return lines;
    }

    // How many lines come before the K-th call of an operation.
    static std::size_t Before(const Lines& lines, const std::string& operation, std::size_t which) {
        std::size_t at = 0;
        for (; at < lines.size(); ++at)
            if (Operation_Of(lines[at]) == operation && --which == 0)
                break;
        return at;
    }

    Editor_Session session;
    std::string junk;
};

TEST_P(Fault_Sweep, Every_Call_May_Fail_In_Every_Way) {
    const std::string script = Generator(static_cast<unsigned>(GetParam())).Script();
    SCOPED_TRACE(script);
    const Lines trouble_free = Play(script, {});
    for (const Line& result : Only(trouble_free, "result"))
        ASSERT_EQ(result.at("ErrDescription"), "") << result;
    std::map<std::string, std::size_t> calls;
    for (const Line& line : trouble_free) {
        const std::string operation = Operation_Of(line);
        if (operation.empty())
            continue;
        const std::size_t which = ++calls[operation];
        const std::string target = operation + "@" + std::to_string(which);
        struct Way {
            const char* Option;
            std::string Value;
            bool Is_Seen;
        };
        std::vector<Way> ways{{"--fail", target + "=-2147418113:no luck", true},
                              {"--fail", target + "=-2147418113:", false},
                              {"--throw", target, true}};
        if (operation.starts_with("Get_"))
            ways.push_back({"--reply", target + "=" + junk, true});
        for (const Way& way : ways) {
            SCOPED_TRACE(std::string(way.Option) + " " + way.Value);
            const Lines lines = Play(script, {way.Option, way.Value});
            const std::size_t same = Before(trouble_free, operation, which);
            ASSERT_GE(lines.size(), same);
            EXPECT_TRUE(std::equal(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(same),
                                   trouble_free.begin()))
                << "something has changed before the fault";
            bool recorded = false;
            for (const Line& result : Only(lines, "result")) {
                EXPECT_EQ(result.at("shown"), result.at("ErrDescription") == "") << result;
                recorded = recorded || result.at("ErrDescription") != "";
            }
            EXPECT_TRUE(recorded || !way.Is_Seen);
        }
    }
    EXPECT_GE(calls.size(), 3U) << "the script calls too little";
}

INSTANTIATE_TEST_SUITE_P(Scripts, Fault_Sweep, ::testing::Range(std::size_t{0}, Scripts()));

} // namespace
