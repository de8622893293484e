#include "editing/editing_commands.h"

#include <unistd.h>

#include <sstream>

#include "not_started.h"
#include "process/errors.h"
#include "run_setup/bundled_modules.h"
#include "run_setup/installed_display.h"
#include "run_setup/installed_texts.h"
#include "run_setup/setup.h"
#include "toolkit/display_factory.h"
#include "transcript/box_reporter.h"

namespace host {

namespace {

// Where a dialog is edited, and whether the transcript has to wait until it is gone.
struct Place {
    std::unique_ptr<toolkit::Display> Display;
    bool Is_Standard_Output = false;
};

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

int Report(const Job_Outcome& outcome, const Streams& streams) {
    if (outcome.Shown)
        return status::OK;
    using automation::To_UTF8;
    Complain(streams, To_UTF8(outcome.Error_Location) + ": error " + std::to_string(outcome.Error_Code) +
                          ": " + To_UTF8(outcome.Error_Description));
    return status::Shown_Failed;
}

class Edit_Command final : public Subcommand {
    Outline About() const override { return {"edit", "Open the editor in a window or a terminal"}; }
    bool Is_Driven() const override { return true; }

    void Declare(Options& options) override {
        Declare_Partition(options, wanted);
        Declare_Node(options, wanted.Node_Number, "Node (1); 0 for the default node");
        Declare_Identifier(options, "--language", wanted.Language_ID,
                           "Language (1, English); its texts have to be installed");
        options.Flag("--terminal", in_terminal, "In this terminal instead of a window");
        options.Flag("--silent", wanted.Silent_Error, "Show no box for internal errors");
        Declare_Common(options, common);
    }

    int Run(const Streams& streams) override {
        if (!common.Strings)
            common.Strings = Installed_Texts(wanted.Language_ID);
        std::ostringstream held_back;
        Transcript transcript(streams.Out);
        Setup setup(common, transcript);
        Offer_Bundled_Modules();
        const Place place = Open_Place(in_terminal);
        if (place.Is_Standard_Output)
            transcript.Write_To(held_back);
        setup.Start();
        Box_Reporter reporter(*place.Display, transcript);
        const Installed_Display installed(common.Trace ? reporter : *place.Display);
        style_node::Editor editor;
        const Job_Outcome outcome = Run_Job(editor, wanted);
        streams.Out << held_back.str() << std::flush;
        return Report(outcome, streams);
    }

    Common_Options common;
    Job wanted;
    bool in_terminal = false; // else a window, or a terminal where there is none
};

} // namespace

std::unique_ptr<Subcommand> Make_Edit_Command() {
    return std::make_unique<Edit_Command>();
}

} // namespace host
