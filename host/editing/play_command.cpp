#include "editing/editing_commands.h"

#include <iterator>

#include "not_started.h"
#include "process/text_file.h"
#include "run_setup/bundled_modules.h"
#include "run_setup/installed_display.h"
#include "run_setup/setup.h"
#include "scripts/screenshot.h"
#include "scripts/script_player.h"
#include "style_node/control_names.h"
#include "toolkit/display_factory.h"
#include "transcript/box_reporter.h"

namespace host {

namespace {

// The script is an argument, not a part of the machine.
std::string Script_Text(const std::string& name, std::istream& standard_input) try {
    return Read_Input(name, standard_input);
} catch (const Start_Error& error) {
    throw Usage_Error(error.what());
}

std::vector<Command> Load_Script(const std::string& name, std::istream& standard_input) try {
    return Parse_Script(Script_Text(name, standard_input),
                        {std::begin(style_node::Control_Names), std::end(style_node::Control_Names)});
} catch (const Script_Error& error) {
    throw Usage_Error((name == "-" ? "standard input" : name) + ", " + error.what());
}

class Play_Command final : public Subcommand {
    Outline About() const override { return {"play", "Run an editing script"}; }
    bool Is_Driven() const override { return true; }

    void Declare(Options& options) override {
        options.Argument("SCRIPT", script, "The script; - is standard input");
        options.Flag("--window", in_window,
                     "On the real window, by synthesised key strokes and mouse clicks");
        options.Flag("--terminal", in_terminal,
                     "On the dialog of a text terminal, by the keys that it sends");
        options.Exclude("--terminal", "--window");
        options.Text("--picture", picture, "FILE",
                     "Draw the dialog as the script last left it into this PNG file");
        Declare_Common(options, common);
        Declare_Faults(options, common);
    }

    int Run(const Streams& streams) override {
        auto commands = Load_Script(script, streams.In);
        Transcript transcript(streams.Out);
        Setup setup(common, transcript);
        Script_Display script_display;
        const auto played = Open_Played(script_display);
        setup.Start();
        Box_Reporter display(played ? *played : script_display, transcript);
        const Installed_Display installed(display);
        Script_Player player(script_display, transcript);
        std::optional<Screenshot> screenshot;
        if (picture) {
            screenshot.emplace(*picture);
            player.On_Step = [&](toolkit::Form& form) { screenshot->Take(form); };
        }
        if (!player.Run(std::move(commands)))
            throw Start_Error("the dialog stayed up when the script had ended; let the script close it");
        if (screenshot)
            screenshot->Check();
        return status::OK;
    }

    // Null for the bare controls.
    std::unique_ptr<toolkit::Display> Open_Played(toolkit::Player& player) const try {
        if (!in_window && !in_terminal)
            return nullptr;
        Offer_Bundled_Modules();
        return toolkit::Open_Played_Display(player, in_window ? toolkit::Window_Identity
                                                              : toolkit::Terminal_Identity);
    } catch (const automation::Failure& failure) {
        throw Not_Started(failure);
    }

    Common_Options common;
    std::string script;
    std::optional<std::string> picture;
    bool in_window = false, in_terminal = false; // else on the bare controls
};

} // namespace

std::unique_ptr<Subcommand> Make_Play_Command() {
    return std::make_unique<Play_Command>();
}

} // namespace host
