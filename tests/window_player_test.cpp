// Scripts on the real widgets and in a text terminal: what they print is what the bare controls print.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "program_run.h"
#include "script_files.h"

namespace {

using nlohmann::json;
using program_run::Outcome;
using namespace script_files;

// `place`: an option; none for the bare controls. Offscreen; what Qt itself says about that is left out of
// the errors.
Outcome Play(const std::string& file, std::vector<std::string> options, const std::string& place = {},
             const std::string& input = {}) {
    const Temporary_Folder home;
    options.insert(options.begin(),
                   {"QT_QPA_PLATFORM=offscreen", STYLE_EDITOR, "play", file, "--appdata", home / "appdata"});
    if (!place.empty())
        options.push_back(place);
    Outcome outcome = program_run::Run("/usr/bin/env", options, home, Scripts, input);
    std::string errors;
    for (const std::string& line : Lines(outcome.Errors))
        errors += line.rfind("style-editor:", 0) == 0 ? line : "";
    outcome.Errors = errors;
    return outcome;
}

// Takes a place out of both lines; false when it differs by more than a pixel. Where a form lies depends on
// the screen.
bool Take_Places(json& bare, json& window) {
    constexpr int Pixel = 15;
    for (const char* part : {"left", "top", "width", "height"}) {
        const bool free = bare["event"] == "form" && (*part == 'l' || *part == 't');
        if (!free && bare.contains(part) && window.contains(part) &&
            std::abs(bare[part].get<int>() - window[part].get<int>()) > Pixel)
            return false;
        if (bare.contains(part) != window.contains(part))
            return false;
        bare.erase(part);
        window.erase(part);
    }
    return true;
}

void Expect_Equal(const Outcome& bare, const Outcome& window) {
    EXPECT_EQ(bare.Status, window.Status) << window.Errors;
    EXPECT_EQ(bare.Errors, window.Errors);
    const auto expected = Comparable(bare.Out);
    const auto lines = Comparable(window.Out);
    ASSERT_FALSE(expected.empty());
    ASSERT_EQ(expected.size(), lines.size());
    for (std::size_t at = 0; at < lines.size(); ++at) {
        json one = json::parse(expected[at]);
        json other = json::parse(lines[at]);
        ASSERT_TRUE(Take_Places(one, other) && one == other) << expected[at] << '\n' << lines[at];
    }
}

constexpr const char* Places[] = {"--window", "--terminal"};

class Displayed : public testing::TestWithParam<std::string> {};

TEST_P(Displayed, Prints_What_The_Bare_Controls_Print) {
    const std::string file = GetParam() + ".script";
    const auto options = Words(Directive(Bytes_Of_File(Scripts + "/" + file), "options"));
    const Outcome bare = Play(file, options);
    for (const char* place : Places) {
        SCOPED_TRACE(place);
        Expect_Equal(bare, Play(file, options, place));
    }
}

INSTANTIATE_TEST_SUITE_P(Script, Displayed, testing::ValuesIn(Script_Names()),
                         [](const auto& script) { return script.param; });

TEST(Displayed_Player, Does_What_The_Bare_Controls_Do) {
    const std::string jobs[] = {
        // keys, some of them refused, and texts that no key gives
        "type txtDescription \"a\\tb\\u00e9\\uD83D\\uDE00\\nz\\uD800\"\nshow\nbackspace txtDescription "
        "3\nshow\n"
        "type cmbHookFlash \"x-1 9\"\nshow cmbHookFlash\nbackspace cmbHookFlash 99\nshow cmbHookFlash\n",
        // over the limits
        "paste txtDescription \"012345678901234567890123456789012345678901234567890123456789\"\nshow\n"
        "insert txtDescription 3 \"\\u0001 \\\"\"\nshow txtDescription\ninsert cmbHookFlash 99 77777\nshow\n"
        "paste cmbHookFlash \"\"\nshow\nfocus cmbRingOn\nshow\n",
        // picks, of the same entry too, and refused ones
        "pick cmbHookFlash 3\npick cmbHookFlash 3\nshow\npick cmbHookFlash 39\npick cmbHookFlash 40\nshow\n"
        "pick txtTransfer 1\nclick optEnhanced\npick cmbThreshold 1\nshow\npick cmbNode 0\nshow\n",
        "click optFull\nclick optFull\nshow\nclick optBlind\nshow\nclick lblRetrieve\nfocus fraSupervised\n"
        "click optDialContinue\ntype cmbBusyOn 1\nshow\nclick optPartial\nshow\nclick cmdApply\nshow\n",
        "key Tab\nshow form\nkey Tab\nshow form\nfocus cmdOK\nkey Tab\nshow form\nfocus cmbNode\nkey Enter\n",
        // the form goes in the middle of a command
        "paste txtDescription New\nanswer cancel\nkey Escape\nshow form\nanswer save\nclose\nshow form\n",
        // leaving the field asks, and the click that did so goes on
        "click optPartial\npaste cmbBusyOff -9e9\nanswer cancel\nclick optBlind\nshow\n"
        "answer cancel\nclick cmdNext\nshow\nanswer cancel\npick cmbNode 1\nshow\n",
        // answers that no button gives
        "paste txtDescription New\nanswer fail\nclick cmdNext\nshow\nanswer 77\nclick cmdNext\nshow\n"
        "answer ok\nclick cmdLast\nanswer discard\nclick cmdFirst\nshow\nclick cmdPrevious\nclick cmdNext\n",
    };
    for (const std::string& job : jobs) {
        const std::string script = "shown 1 1 12\nshow\n" + job + "shown 1 2 7\nshow form\n";
        const Outcome bare = Play("-", {"--trace"}, {}, script);
        for (const char* place : Places) {
            SCOPED_TRACE(place + ("\n" + script));
            Expect_Equal(bare, Play("-", {"--trace"}, place, script));
        }
    }
}

// In the middle of Qt's offscreen screen of 800 x 800 pixels, frame and all.
TEST(Displayed_Player, Tells_Where_The_Form_Lies_With_Its_Frame) {
    constexpr int Screen = 800 * 15;
    const Outcome outcome = Play("-", {}, "--window", "shown 1 1 12\nshow form\n");
    const json form = json::parse(Comparable(outcome.Out).at(0));
    for (const auto& [place, extent] : {std::pair("left", "width"), std::pair("top", "height")})
        EXPECT_NEAR(form.at(place), (Screen - form.at(extent).get<int>()) / 2, 15) << form;
}

} // namespace
