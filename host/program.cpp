#include "host/program.h"

#include <unistd.h>

#include <iterator>
#include <optional>
#include <sstream>

#include "automation/create.h"
#include "automation/text.h"
#include "bulk.h"
#include "host/box_reporter.h"
#include "host/script_player.h"
#include "host/setup.h"
#include "installed_display.h"
#include "own_modules.h"
#include "painter.h"
#include "registering.h"
#include "store_history.h"
#include "style_node/control_names.h"
#include "text_file.h"
#include "toolkit/display_source.h"
#include "translation.h"

namespace host {

namespace {

void Complain(const Streams& streams, const std::string& message) {
    streams.Errors << "style-editor: " << message << std::endl;
}

std::string Script_Text(const std::string& name, std::istream& standard_input) try {
    if (name == "-")
        return {std::istreambuf_iterator<char>(standard_input), {}};
    return Read_File(name);
} catch (const Start_Error& error) {
    throw Usage_Error(error.what()); // the script is an argument, not a part of the machine
}

std::vector<Command> Load_Script(const std::string& name, std::istream& standard_input) try {
    return Parse_Script(Script_Text(name, standard_input),
                        {std::begin(style_node::Control_Names), std::end(style_node::Control_Names)});
} catch (const Script_Error& error) {
    throw Usage_Error((name == "-" ? "standard input" : name) + ", " + error.what());
}

int Report(const Job_Outcome& outcome, const Streams& streams) {
    if (outcome.Shown)
        return status::OK;
    using automation::To_UTF8;
    Complain(streams, To_UTF8(outcome.Error_Location) + ": error " + std::to_string(outcome.Error_Code) +
                          ": " + To_UTF8(outcome.Error_Description));
    return status::Shown_Failed;
}

// Where a dialog is edited, and whether the transcript has to wait until it is gone.
struct Place {
    std::unique_ptr<toolkit::Display> Display;
    bool Is_Standard_Output = false;
};

// Why there is no Display.
Start_Error Not_Started(const automation::Failure& failure) {
    return Start_Error(automation::To_UTF8(failure.Reason.empty() ? failure.Description : failure.Reason));
}

Place Open_Place(bool in_terminal) try {
    if (in_terminal)
        return {toolkit::Open_Display(toolkit::Terminal_Identity), true};
    try {
        return {toolkit::Open_Display()};
    } catch (const automation::Failure&) {
        if (!isatty(STDIN_FILENO) || !isatty(STDOUT_FILENO))
            throw;
        return {toolkit::Open_Display(toolkit::Terminal_Identity), true};
    }
} catch (const automation::Failure& failure) {
    throw Not_Started(failure);
}

// Null for the bare controls.
std::unique_ptr<toolkit::Display> Open_Played(const Play_Command& command, toolkit::Player& player) try {
    if (!command.Window && !command.Terminal)
        return nullptr;
    Offer_Own_Modules();
    return toolkit::Open_Played_Display(player, command.Window ? toolkit::Window_Identity
                                                               : toolkit::Terminal_Identity);
} catch (const automation::Failure& failure) {
    throw Not_Started(failure);
}

int Run(const Play_Command& command, const Streams& streams) {
    auto script = Load_Script(command.Script, streams.In);
    Transcript transcript(streams.Out);
    Setup setup(command.Common, transcript);
    Script_Display script_display;
    const auto played = Open_Played(command, script_display);
    setup.Start();
    Box_Reporter display(played ? *played : script_display, transcript);
    const Installed_Display installed(display);
    Script_Player player(script_display, transcript);
    std::optional<Painter> painter;
    if (command.Picture) {
        painter.emplace(*command.Picture);
        player.On_Step = [&](toolkit::Form& form) { painter->Paint(form); };
    }
    if (!player.Run(std::move(script)))
        throw Start_Error("the dialog stayed up when the script had ended; let the script close it");
    if (painter)
        painter->Check();
    if (!streams.Out)
        throw Start_Error("the transcript could not be written; check where standard output goes");
    return status::OK;
}

int Run(const Edit_Command& command, const Streams& streams) {
    std::ostringstream held_back;
    Transcript transcript(streams.Out);
    Setup setup(command.Common, transcript);
    Offer_Own_Modules();
    const Place place = Open_Place(command.Terminal);
    if (place.Is_Standard_Output)
        transcript.Write_To(held_back);
    setup.Start();
    Box_Reporter reporter(*place.Display, transcript);
    const Installed_Display installed(command.Common.Trace ? reporter : *place.Display);
    style_node::Editor editor;
    const Job_Outcome outcome = Run_Job(editor, command.Wanted);
    streams.Out << held_back.str() << std::flush;
    return Report(outcome, streams);
}

int Run(const Store_Init_Command& command, const Streams& streams) {
    const std::string name = Create_Store(command);
    streams.Out << "created the store " << name << std::endl;
    return status::OK;
}

int Run(const Store_History_Command& command, const Streams& streams) {
    Print_History(command, streams.Out);
    return status::OK;
}

int Run(const Store_Upgrade_Command& command, const Streams& streams) {
    const std::string name = Upgrade_Store(command);
    streams.Out << "the store " << name << " is up to date" << std::endl;
    return status::OK;
}

int Run(const Export_Command& command, const Streams& streams) {
    Export(command, streams);
    return status::OK;
}

int Run(const Apply_Command& command, const Streams& streams) {
    return Apply(command, streams) ? status::OK : status::Refused;
}

int Run(const Register_Command& command, const Streams& streams) {
    Register(command, streams.Out);
    return status::OK;
}

int Run(const List_Command& command, const Streams& streams) {
    return List(command, streams.Out) ? status::OK : status::Class_Not_Found;
}

int Run(const Strings_Command& command, const Streams& streams) {
    if (command.Picture.empty())
        return Check_Strings(command, streams.Out) ? status::OK : status::Strings_Wrong;
    Picture_Strings(command, streams.Out);
    return status::OK;
}

int Run(const Information& information, const Streams& streams) {
    streams.Out << information.Text << std::flush;
    return status::OK;
}

int Run_Command(const std::vector<std::string>& arguments, const Streams& streams) {
    const std::vector<std::string> options(arguments.begin() + 1, arguments.end());
    return std::visit([&](const auto& command) { return Run(command, streams); },
                      Parse_Command_Line(options));
}

// The exception in flight, as a message and a status.
int Failed(const Streams& streams) try { throw; } catch (const Usage_Error& error) {
    Complain(streams, error.what());
    return status::Wrong_Usage;
} catch (const automation::Failure& failure) {
    Complain(streams, "the editor component cannot be used: " + automation::To_UTF8(failure.Description) +
                          " (" + std::to_string(failure.Number) + ")" +
                          (failure.Reason.empty() ? "" : "; " + automation::To_UTF8(failure.Reason)));
    return status::Cannot_Start;
} catch (const std::exception& error) {
    Complain(streams, error.what());
    return status::Cannot_Start;
} catch (...) {
    Complain(streams, "something unknown went wrong");
    return status::Cannot_Start;
}

} // namespace

int Run_Program(const std::vector<std::string>& arguments, const Streams& streams) noexcept {
    try {
        return Run_Command(arguments, streams);
    } catch (...) {
        return Failed(streams);
    }
}

} // namespace host
