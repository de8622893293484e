// One editing job: the component as a host calls it.
//
// Everything here comes on one thread. A failure to create or to call the component is thrown as
// automation::Failure.
#pragma once

#include "style_node/editor.h"

namespace host {

using automation::Integer;
using automation::Long;
using automation::String;
using automation::String_View;

// The arguments of Shown; what is not given is what a host leaves out.
struct Job {
    Integer Config_ID = 1;
    Integer Partition_ID = 1;
    Integer Node_Number = 1;
    Integer Language_ID = 1;
    bool Silent_Error = false;
};

// The answer of Shown and what the properties say after it.
struct Job_Outcome {
    bool Shown = false;
    String Error_Location;
    Long Error_Code = 0;
    String Error_Description;
    bool Editing_Default_Node = false;
    bool SupervisedType_Blind = false;
};

// Blocks while the dialog is up.
Job_Outcome Run_Job(style_node::Editor& editor, const Job& job);

} // namespace host
