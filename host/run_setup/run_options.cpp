#include "run_setup/run_options.h"

namespace host {

void Declare_Store(Options& options, std::optional<std::string>& store) {
    options.Text("--store", store, "S", "sqlite:PATH or postgresql://...; without it your own store");
}

void Declare_Common(Options& options, Common_Options& common) {
    Declare_Store(options, common.Store);
    options.Text("--strings", common.Strings, "FILE", "Read all texts from this string table");
    options.Text("--appdata", common.App_Data, "DIR",
                 "The machine's common application-data folder; empty for none");
    options.Text("--registry", common.Registry, "FILE", "Read this exported registry file");
    options.Under("For tests");
    options.Flag("--trace", common.Trace, "Print every call on a data component");
}

void Declare_Faults(Options& options, Common_Options& common) {
    options.Under("For tests");
    options.Repeatable("--fail", common.Failures, "OPERATION[@K][=NUMBER:DESCRIPTION]",
                       "Make the K-th or every call of an operation fail");
    options.Repeatable("--throw", common.Exceptions, "OPERATION[@K]",
                       "Make the K-th or every call of an operation throw what no component may");
    options.Repeatable("--reply", common.Replies, "OPERATION[@K]=FILE",
                       "Let a reading operation answer this file's text");
    options.Repeatable("--missing", common.Missing, "PROGID", "Make creating this component fail");
}

void Declare_Partition(Options& options, Job& place) {
    Declare_Identifier(options, "--config", place.Config_ID, "Configuration (1)");
    Declare_Identifier(options, "--partition", place.Partition_ID, "Partition (1)");
}

} // namespace host
