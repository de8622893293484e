#include "run_setup/setup.h"

#include "faults/component_proxies.h"
#include "process/errors.h"
#include "run_setup/bundled_modules.h"
#include "run_setup/store_choice.h"
#include "shell/registry.h"
#include "shell/replaced_strings.h"
#include "shell/special_folders.h"

namespace host {

Setup::Setup(const Common_Options& options, Transcript& transcript) : options(options) {
    if (options.Trace)
        plan->Trace(transcript);
    for (const std::string& failure : options.Failures)
        plan->Add_Failure(failure);
    for (const std::string& exception : options.Exceptions)
        plan->Add_Exception(exception);
    for (const std::string& name : options.Missing)
        Require_Known_Class(name);
}

Setup::~Setup() {
    Remove_Proxies();
}

void Setup::Start() {
    Read_Files();
    Offer_Bundled_Modules();
    store = std::make_unique<Open_Store>(options.Store);
    if (!plan->Is_Idle())
        Install_Proxies(plan);
    for (const std::string& name : options.Missing)
        Make_Missing(name);
}

void Setup::Read_Files() {
    for (const std::string& reply : options.Replies)
        plan->Add_Reply(reply);
    try {
        if (options.Strings)
            shell::Replace_Strings(shell::String_Table::Load(*options.Strings));
        if (options.Registry)
            shell::Load_Hive(*options.Registry);
    } catch (const shell::Format_Error& error) {
        throw Start_Error(std::string(error.what()) + (error.Line > 0 ? "; correct that line" : ""));
    }
    if (options.App_Data)
        shell::Set_Common_App_Data(options.App_Data);
}

} // namespace host
