// The built editor on an X server, used from outside by key strokes and mouse clicks: what comes of a script
// is what comes of it on the bare controls.
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <thread>

#include <nlohmann/json.hpp>

#include "program_run.h"
#include "script_files.h"
#include "x_server.h"

namespace {

using nlohmann::json;
using program_run::Outcome;
using program_run::Program;
using namespace script_files;

// Does what a script says, for as long as one dialog is up.
class Person {
public:
    Person(const X_Server& x, const Program& editor, const std::map<std::string, json>& controls)
        : x(x), editor(editor), controls(controls) {}

    void Do(const std::string& line) {
        const std::vector<std::string> words = Words(line);
        const std::string& verb = words.at(0);
        if (verb == "show" || verb == "items")
            return;
        if (verb == "answer")
            return answers.push_back(words.at(1));
        Act(verb, words, line);
        if (!answers.empty())
            Answer(std::exchange(answers, {}).front());
    }

private:
    static constexpr const char* Title = "STYLE Node Editor";
    static constexpr const char* Question = "Confirmation";

    void Act(const std::string& verb, const std::vector<std::string>& words, const std::string& line) {
        if (verb == "key")
            return Key({words.at(1) == "Enter" ? "Return" : words.at(1)});
        if (verb == "close") // the cancel button, because the close box is the window manager's
            return Key({"Escape"});
        const std::string& control = words.at(1);
        if (verb == "click" || verb == "focus")
            return Click(control, verb == "click" ? 7 : 20);
        if (verb == "pick")
            return Pick(control, std::stoul(words.at(2)));
        Enter(control);
        if (verb == "backspace")
            return Key(std::vector<std::string>(std::stoul(words.at(2)), "BackSpace"));
        ASSERT_EQ(verb, "type") << line;
        const auto quoted = line.find('"');
        const std::string text =
            quoted == std::string::npos ? words.at(2) : line.substr(quoted + 1, line.rfind('"') - quoted - 1);
        Send({"type", "--delay", "2", text});
    }

    // A control that was reached by Tab is not clicked: the keys go where the focus is.
    void Enter(const std::string& control) {
        if (focused != control && !focused.empty()) {
            Click(control, 20);
            Send({"key", "End"});
        }
        focused = control;
    }
    void Key(std::vector<std::string> keys) {
        focused = keys.front() == "Tab" ? "" : focused;
        keys.insert(keys.begin(), {"key", "--delay", "2"});
        Send(keys);
    }
    void Pick(const std::string& combo, std::size_t index) {
        Click(combo, -8); // on its arrow
        std::vector<std::string> keys(index, "Down");
        keys.insert(keys.begin(), {"key", "--delay", "2", "Home"});
        keys.push_back("Return");
        Send(keys);
    }
    // So many pixels from its left end, or from its right one.
    void Click(const std::string& control, int across) {
        constexpr int Pixel = 15;
        const json& place = controls.at(control);
        int left = place["left"].get<int>() + (across < 0 ? place["width"].get<int>() : 0);
        int top = place["top"].get<int>() + place["height"].get<int>() / 2;
        if (const std::string frame = Frame_Of(control); !frame.empty()) {
            left += controls.at(frame)["left"].get<int>();
            top += controls.at(frame)["top"].get<int>();
        }
        focused = control;
        Send({"mousemove", "--window", window, std::to_string(left / Pixel + across),
              std::to_string(top / Pixel), "click", "1"});
    }
    static std::string Frame_Of(const std::string& control) {
        if (control.starts_with("opt"))
            return "fraSupervised";
        for (const char* inside : {"Ring", "Busy", "Retr", "Threshold"})
            if (control.find(inside) != std::string::npos)
                return "fra";
        return {};
    }

    void Answer(const std::string& answer) {
        static const std::map<std::string, std::vector<std::string>> keys{
            {"save", {"Return"}}, {"discard", {"Tab", "space"}}, {"cancel", {"Escape"}}};
        std::vector<std::string> words{"key", "--delay", "2"};
        words.insert(words.end(), keys.at(answer).begin(), keys.at(answer).end());
        Send(words, Question);
        const auto both = "(" + std::string(Title) + "|" + Question + ")";
        EXPECT_TRUE(Comes([&] { return x.Windows(both).size() == 1 || editor.Has_Ended(); })) << answer;
    }

    // Gives the window the focus, as a window manager would. A search that meets a window on its way out
    // finds nothing.
    void Send(std::vector<std::string> words, const char* title = Title) {
        std::vector<std::string> found;
        ASSERT_TRUE(Comes([&] { return (found = x.Windows(title)).size() == 1; }))
            << title << " is not up for " << words.front();
        std::replace(words.begin(), words.end(), window, found.front());
        words.insert(words.begin(), {"windowfocus", found.front()});
        x.Tool(words);
    }

    const X_Server& x;
    const Program& editor;
    const std::map<std::string, json>& controls;
    const std::string window = "(window)";
    std::vector<std::string> answers;
    std::string focused = "txtDescription";
};

// The calls of the product's components, and the boxes.
std::vector<std::string> Deeds(const std::string& transcript) {
    std::vector<std::string> deeds;
    for (const std::string& line : Comparable(transcript))
        if (line.starts_with("{\"event\":\"call\"") || line.starts_with("{\"event\":\"box\""))
            deeds.push_back(line);
    return deeds;
}

// The first line that differs, both ways.
std::string Difference(const std::vector<std::string>& one, const std::vector<std::string>& other) {
    const auto [mine, theirs] = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    return (mine == one.end() ? "" : *mine) + (theirs == other.end() ? "" : "\n" + *theirs);
}

class Real_Input : public testing::Test {
protected:
    // Both ways, each on a store of its own.
    void Expect_Equal(const std::string& script) {
        Outcome played = Play(bare, Script_With_Places(script));
        ASSERT_EQ(played.Status, 0) << played.Errors;
        std::string done;
        std::vector<std::string> job;
        for (const std::string& line : Lines(script + "\nshown"))
            if (line.starts_with("shown"))
                done += job.empty() ? "" : Edit(std::exchange(job, {}), Places(played.Out)), job = {line};
            else if (!line.empty() && line[0] != '#')
                job.push_back(line);
        ASSERT_FALSE(Deeds(played.Out).empty());
        EXPECT_EQ(Difference(Deeds(played.Out), Deeds(done)), "");
        EXPECT_EQ(Difference(Lines(Play(bare, Everything).Out), Lines(Play(real, Everything).Out)), "");
    }

private:
    static constexpr const char* Everything =
        "shown 1 1 12\nshow\nclick cmdPrevious\nshow\nclick cmdNext\nclick cmdNext\nshow\n";

    static std::string Script_With_Places(std::string script) {
        return script.insert(script.find('\n', script.find("shown")) + 1, "show\n");
    }
    static std::map<std::string, json> Places(const std::string& transcript) {
        std::map<std::string, json> places;
        for (const std::string& line : Lines(transcript))
            if (const json event = json::parse(line); event["event"] == "control")
                places.emplace(event["name"], event);
        return places;
    }
    static Outcome Play(const Temporary_Folder& home, const std::string& script) {
        return program_run::Run(STYLE_EDITOR, {"play", "-", "--trace", "--appdata", home.String()}, home,
                                Scripts, script);
    }
    // One dialog, from its "shown" to its end; what was traced.
    std::string Edit(const std::vector<std::string>& job, const std::map<std::string, json>& places) {
        const std::vector<std::string> shown = Words(job.front());
        Program editor("/usr/bin/env",
                       {x.Display(), "QT_QPA_PLATFORM=xcb", "XDG_RUNTIME_DIR=" + runtime,
                        "DBUS_SESSION_BUS_ADDRESS=disabled:", STYLE_EDITOR, "edit", "--trace", "--appdata",
                        real.String(), "--config", shown.at(1), "--partition", shown.at(2), "--node",
                        shown.at(3)},
                       real, Scripts);
        Person person(x, editor, places);
        for (auto line = job.begin() + 1; line != job.end() && !HasFailure(); ++line)
            person.Do(*line);
        EXPECT_TRUE(Comes([&] { return editor.Has_Ended(); })) << "the dialog stayed up";
        if (!editor.Has_Ended())
            return {};
        const Outcome outcome = editor.End();
        EXPECT_EQ(outcome.Status, 0) << outcome.Errors;
        return outcome.Out;
    }

    static std::string Private(const std::string& folder) {
        std::filesystem::create_directory(folder);
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
        return folder;
    }

    const Temporary_Folder bare, real;
    const std::string runtime = Private(real / "runtime");
    const X_Server x;
};

TEST_F(Real_Input, A_Whole_Script) {
    Expect_Equal(Bytes_Of_File(Scripts + "/typical_job.script"));
}

TEST_F(Real_Input, Keys_Tabs_Lists_Questions_And_Navigation) {
    Expect_Equal("shown 1 1 12\n"
                 "type txtDescription \" no. 7!\"\n"
                 "backspace txtDescription 1\n"
                 "type cmbHookFlash x9y-\n" // some of it refused
                 "key Tab\ntype txtTransfer A*1\n"
                 "key Tab\ntype txtDisconnect 5\n"
                 "pick cmbThreshold 3\n"
                 "pick cmbRingOn 1\n"
                 "type txtRetrieve 123456789\n"
                 "answer save\nclick cmdNext\n"
                 "click optFull\n"
                 "type cmbBusyOff 1\n"
                 "answer cancel\nclick cmdPrevious\n"
                 "answer discard\npick cmbNode 8\n"
                 "type txtDescription 1\n"
                 "click cmdApply\n"
                 "type txtDescription 2\n"
                 "answer discard\nkey Escape\n"
                 "shown 1 1 15\n"
                 "type txtDescription New\n"
                 "key Enter\n");
}

} // namespace
