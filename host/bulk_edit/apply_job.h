// Edited lines or rows back into the store.
#pragma once

#include "process/streams.h"
#include "run_setup/run_options.h"

namespace host {

struct Apply_Options {
    Common_Options Common; // the store
    Job Place;             // configuration and partition
    std::string File;      // "-" is standard input
    bool Dry_Run = false;
    bool Force = false; // also over what others have changed since
};

// Applies every line or none; False when a line was refused. Prints refusals, and in a dry run changes, in
// the order of the lines; in the end the command that takes it back. Throws Start_Error, after which nothing
// has changed.
bool Apply(const Apply_Options& options, const Streams& streams);

} // namespace host
