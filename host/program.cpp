#include "host/program.h"

#include <unistd.h>

#include <iterator>
#include <optional>
#include <sstream>
#include <system_error>

#include "automation/create.h"
#include "automation/text.h"
#include "bulk.h"
#include "host/box_reporter.h"
#include "host/script_player.h"
#include "host/setup.h"
#include "installed_display.h"
#include "interruption.h"
#include "node_tables.h"
#include "own_modules.h"
#include "painter.h"
#include "registering.h"
#include "store_answers.h"
#include "store_history.h"
#include "style_node/control_names.h"
#include "text_file.h"
#include "toolkit/display_source.h"
#include "translation.h"
#include "visible_text.h"

namespace host {

namespace {

void Require_Written(const Streams& streams, const std::string& before = "") {
    if (!streams.Out.flush())
        throw Outcome_Error(before + "standard output could not be written; check where it goes");
}

// A report that holds texts of others.
template <typename Report>
void Print_Visibly(const Streams& streams, Report&& report) {
    std::ostringstream text;
    const auto print = [&] { streams.Out << Visible_Lines(text.str()); };
    try {
        report(text);
    } catch (...) {
        print();
        throw;
    }
    print();
}

void Complain(const Streams& streams, const std::string& message) {
    streams.Errors << "style-editor: " << Visible_Text(message) << std::endl;
}

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
    streams.Out << "created the store " << Visible_Text(name) << '\n';
    Require_Written(streams, "the store was created, but ");
    return status::OK;
}

int Run(const Store_History_Command& command, const Streams& streams) {
    return Print_History(command, streams) ? status::OK : status::Refused;
}

int Run(const Store_Upgrade_Command& command, const Streams& streams) {
    const std::string name = Upgrade_Store(command);
    streams.Out << "the store " << Visible_Text(name) << " is up to date\n";
    Require_Written(streams, "the store is up to date, but ");
    return status::OK;
}

int Run(const Export_Command& command, const Streams& streams) {
    return Export(command, streams) ? status::OK : status::Refused;
}

int Run(const Apply_Command& command, const Streams& streams) {
    return Apply(command, streams) ? status::OK : status::Refused;
}

int Run(const Find_Command& command, const Streams& streams) {
    return Find_Nodes(command, streams) ? status::OK : status::Refused;
}

int Run(const Show_Command& command, const Streams& streams) {
    return Show_Node(command, streams) ? status::OK : status::Refused;
}

int Run(const Revert_Command& command, const Streams& streams) {
    return All_Or_Nothing([&] { return Revert(command, streams); }) ? status::OK : status::Refused;
}

int Run(const Register_Command& command, const Streams& streams) {
    Print_Visibly(streams, [&](std::ostream& out) { Register(command, out); });
    return status::OK;
}

int Run(const List_Command& command, const Streams& streams) {
    bool all_found = false;
    Print_Visibly(streams, [&](std::ostream& out) { all_found = List(command, out); });
    return all_found ? status::OK : status::Class_Not_Found;
}

int Run(const Strings_Command& command, const Streams& streams) {
    bool is_right = true;
    Print_Visibly(streams, [&](std::ostream& out) {
        if (command.Picture.empty())
            is_right = Check_Strings(command, out);
        else
            Picture_Strings(command, out);
    });
    return is_right ? status::OK : status::Strings_Wrong;
}

int Run(const Information& information, const Streams& streams) {
    streams.Out << information.Text << std::flush;
    return status::OK;
}

// Those that a person or a script drives end at once: what they have saved is saved.
Interruption::Way Way_Of(const Command_Line& command) {
    const bool is_driven =
        std::holds_alternative<Edit_Command>(command) || std::holds_alternative<Play_Command>(command);
    return is_driven ? Interruption::Way::At_Once : Interruption::Way::Unwinds;
}

// Names of files are bytes, but what becomes a text on the way would name another file.
void Check_Arguments(const std::vector<std::string>& arguments) {
    for (std::size_t index = 1; index < arguments.size(); ++index)
        if (!automation::From_UTF8(arguments[index]))
            throw Usage_Error("argument " + std::to_string(index) + ", " + arguments[index] +
                              ", is not UTF-8; rename the file or the folder");
}

int Run_Command(const std::vector<std::string>& arguments, const Streams& streams) {
    Check_Arguments(arguments);
    const std::vector<std::string> options(arguments.begin() + 1, arguments.end());
    const Command_Line command = Parse_Command_Line(options);
    const Interruption interruption(Way_Of(command));
    const int status = std::visit([&](const auto& parsed) { return Run(parsed, streams); }, command);
    Require_Written(streams);
    return status;
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
} catch (const Start_Error& error) {
    Complain(streams, error.what());
    return status::Cannot_Start;
} catch (const std::bad_alloc&) {
    Complain(streams, "there is not enough memory; end other programs, or divide the work");
    return status::Cannot_Start;
} catch (const std::system_error& error) {
    Complain(streams, std::string("the system refused a file, a thread or a process: ") + error.what() +
                          "; look at its limits");
    return status::Cannot_Start;
} catch (const std::exception& error) {
    Complain(streams, std::string("an internal error: ") + error.what());
    return status::Cannot_Start;
} catch (...) {
    Complain(streams, "something unknown went wrong");
    return status::Cannot_Start;
}

} // namespace

int Run_Program(const std::vector<std::string>& arguments, const Streams& streams) noexcept {
    try {
        return Run_Command(arguments, streams);
    } catch (const Outcome_Error& error) {
        Complain(streams, error.what());
    } catch (...) {
        if (!Interruption::Has_Come())
            return Failed(streams);
        Complain(streams, "interrupted; nothing was changed");
    }
    Interruption::End_By_Signal();
    return status::Cannot_Start;
}

} // namespace host
