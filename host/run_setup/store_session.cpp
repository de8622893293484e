#include "run_setup/store_session.h"

#include "automation/create.h"
#include "process/errors.h"
#include "process/visible_text.h"
#include "run_setup/setup.h"
#include "run_setup/store_choice.h"

namespace host {

automation::Reference<recordset::Recordset> Opened(const automation::Variant& xml) {
    recordset::Offer_Classes();
    const auto stream = automation::Create_Bound<recordset::Stream>(recordset::Stream_Program_Identity);
    stream->Open();
    stream->Write_Text(xml.Text());
    stream->Set_Position(0);
    auto rows = automation::Create_Bound<recordset::Recordset>(recordset::Recordset_Program_Identity);
    rows->Open(stream);
    return rows;
}

bool With_Store(const Common_Options& options, const Streams& streams, const std::function<bool()>& body) {
    Transcript unused(streams.Out);
    Setup setup(options, unused);
    setup.Start();
    try {
        return body();
    } catch (const automation::Failure& failure) {
        Give_Up(failure);
    }
}

void Declare_Care(Options& options, bool& dry_run, bool& force) {
    options.Flag("--dry-run", dry_run, "Print every change and refusal, change nothing");
    options.Flag("--force", force, "Also over what others have changed since");
}

std::string Place_Of(const Job& partition) {
    return "partition " + std::to_string(partition.Partition_ID) + " of configuration " +
           std::to_string(partition.Config_ID);
}

bool Tell_Of_No_Nodes(const Job& partition, const Streams& streams) {
    streams.Errors << "style-editor: " << Place_Of(partition) << " has no nodes" << std::endl;
    return false;
}

void Tell(const Streams& streams, const std::string& outcome) {
    if (!streams.Out.flush())
        throw Outcome_Error(outcome + "; standard output could not be written");
    streams.Errors << "style-editor: " << Visible_Text(outcome) << std::endl;
}

bool All_Or_Nothing(const std::function<bool()>& body) try { return body(); } catch (const Outcome_Error&) {
    throw;
} catch (const Start_Error& error) {
    const std::string what = error.what();
    const bool is_unknown = what.find("whether the change was stored is not known") != std::string::npos;
    throw Outcome_Error(is_unknown ? what + "; style-editor store history tells"
                                   : "nothing was changed: " + what);
}

} // namespace host
