// What the commands for stores share: an answer of the store as rows, and how they end.
#pragma once

#include <functional>
#include <string>

#include "process/streams.h"
#include "recordset/recordset.h"
#include "run_setup/run_options.h"

namespace host {

// The persisted recordset in an answer. Throws automation::Failure.
automation::Reference<recordset::Recordset> Opened(const automation::Variant& xml);

// Does it with the store open. Throws Start_Error for the store's failures.
bool With_Store(const Common_Options& options, const Streams& streams, const std::function<bool()>& body);

// How careful a command that changes nodes is.
void Declare_Care(Options& options, bool& dry_run, bool& force);

// "partition 2 of configuration 1"
std::string Place_Of(const Job& partition);
// Answers false.
bool Tell_Of_No_Nodes(const Job& partition, const Streams& streams);

// Ends a command: what has become of the store goes to standard error. Throws Outcome_Error with it when what
// was printed before could not be written.
void Tell(const Streams& streams, const std::string& outcome);

// Runs what changes everything or nothing: a failure says that nothing was changed, unless that is not known.
bool All_Or_Nothing(const std::function<bool()>& body);

} // namespace host
