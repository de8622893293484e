#include "host/program.h"

#include <system_error>

#include "automation/failure.h"
#include "automation/text.h"
#include "commands.h"
#include "process/errors.h"
#include "process/interruption.h"

namespace host {

namespace {

// Names of files are bytes, but what becomes a text on the way would name another file.
void Check_Arguments(const std::vector<std::string>& arguments) {
    for (std::size_t index = 1; index < arguments.size(); ++index)
        if (!automation::From_UTF8(arguments[index]))
            throw Usage_Error("argument " + std::to_string(index) + ", " + arguments[index] +
                              ", is not UTF-8; rename the file or the folder");
}

int Run_Command(const std::vector<std::string>& arguments, const Streams& streams) {
    Check_Arguments(arguments);
    const Subcommands commands = All_Commands();
    const auto [wanted, text] =
        Read_Command_Line({arguments.begin() + 1, arguments.end()}, commands, Command_Groups());
    if (!wanted)
        streams.Out << text << std::flush;
    const bool is_driven = wanted && wanted->Is_Driven();
    const Interruption interruption(is_driven ? Interruption::Way::At_Once : Interruption::Way::Unwinds);
    const int status = wanted ? wanted->Run(streams) : status::OK;
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
