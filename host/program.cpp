#include "host/program.h"

#include <iterator>

#include "dialog/dlg_gui.h"
#include "host/box_reporter.h"
#include "host/script_player.h"
#include "host/setup.h"
#include "text_file.h"
#include "window/qt_display.h"

namespace host {

namespace {

// Makes a Display the thread's own; its forms go before it does.
class Installed_Display {
public:
    explicit Installed_Display(toolkit::Display& display) { toolkit::Set_Display(&display); }
    ~Installed_Display() {
        toolkit::Discard_All_Forms();
        toolkit::Set_Display(nullptr);
    }
    Installed_Display(const Installed_Display&) = delete;
    Installed_Display& operator=(const Installed_Display&) = delete;
};

void Complain(const Streams& streams, const std::string& message) {
    streams.Errors << "style-editor: " << message << std::endl;
}

std::vector<String> Control_Names() {
    const auto form = std::make_shared<dialog::dlgGUI>(); // never loaded
    std::vector<String> names;
    for (const toolkit::Control* control : form->Controls())
        names.push_back(control->Name());
    return names;
}

std::string Script_Text(const std::string& name, std::istream& standard_input) try {
    if (name == "-")
        return {std::istreambuf_iterator<char>(standard_input), {}};
    return Read_File(name);
} catch (const Start_Error& error) {
    throw Usage_Error(error.what()); // the script is an argument, not a part of the machine
}

std::vector<Command> Load_Script(const std::string& name, std::istream& standard_input) try {
    return Parse_Script(Script_Text(name, standard_input), Control_Names());
} catch (const Script_Error& error) {
    throw Usage_Error((name == "-" ? "standard input" : name) + ", " + error.what());
}

// The window system, for a run that needs it. It is given the program's name alone: its own options are not
// offered.
class Window {
public:
    explicit Window(const std::string& program) : name(program), names{name.data(), nullptr} {}
    toolkit::Display& Open() {
        display = window::Create_Qt_Display(count, names);
        return *display;
    }

private:
    std::string name;
    char* names[2];
    int count = 1;
    std::unique_ptr<toolkit::Display> display;
};

int Run(const Play_Command& command, const std::string& program, const Streams& streams) {
    auto script = Load_Script(command.Script, streams.In);
    Transcript transcript(streams.Out);
    Setup(command.Common, transcript).Start();
    Script_Display script_display;
    Box_Reporter display(script_display, transcript);
    const Installed_Display installed(display);
    Script_Player player(script_display, transcript);
    Window window(program);
    std::string picture_problem;
    if (command.Picture) {
        window.Open();
        player.On_Step = [&](toolkit::Form& form) {
            try {
                window::Save_Picture(form, *command.Picture);
            } catch (const window::Cannot_Show& error) { // not an error of the component that is on the stack
                picture_problem = error.what();
            }
        };
    }
    if (!player.Run(std::move(script)))
        throw Start_Error("the dialog stayed up when the script had ended; let the script close it");
    if (!picture_problem.empty())
        throw Start_Error(picture_problem);
    if (!streams.Out)
        throw Start_Error("the transcript could not be written; check where standard output goes");
    return status::OK;
}

int Report(const Job_Outcome& outcome, const Streams& streams) {
    if (outcome.Shown)
        return status::OK;
    using automation::To_UTF8;
    Complain(streams, To_UTF8(outcome.Error_Location) + ": error " + std::to_string(outcome.Error_Code) +
                          ": " + To_UTF8(outcome.Error_Description));
    return status::Shown_Failed;
}

int Run(const Edit_Command& command, const std::string& program, const Streams& streams) {
    Transcript transcript(streams.Out);
    Setup setup(command.Common, transcript);
    Window window(program);
    toolkit::Display& display = window.Open();
    setup.Start();
    Box_Reporter reporter(display, transcript);
    const Installed_Display installed(command.Common.Trace ? reporter : display);
    return Report(Run_Job(Create_Editor(), command.Wanted), streams);
}

int Run(const Store_Init_Command& command, const std::string&, const Streams& streams) {
    const std::string name = Create_Store(command);
    streams.Out << "created the store " << name << std::endl;
    return status::OK;
}

int Run(const Information& information, const std::string&, const Streams& streams) {
    streams.Out << information.Text << std::flush;
    return status::OK;
}

int Run_Command(const std::vector<std::string>& arguments, const Streams& streams) {
    const std::vector<std::string> options(arguments.begin() + 1, arguments.end());
    return std::visit([&](const auto& command) { return Run(command, arguments.front(), streams); },
                      Parse_Command_Line(options));
}

// The exception in flight, as a message and a status.
int Failed(const Streams& streams) try { throw; } catch (const Usage_Error& error) {
    Complain(streams, error.what());
    return status::Wrong_Usage;
} catch (const automation::Failure& failure) {
    Complain(streams, "the editor component cannot be used: " + automation::To_UTF8(failure.Description) +
                          " (" + std::to_string(failure.Number) + ")");
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
