#include "transcript/job.h"

namespace host {

Job_Outcome Run_Job(style_node::Editor& editor, const Job& job) {
    Job_Outcome outcome;
    outcome.Shown =
        editor.Shown(job.Config_ID, job.Partition_ID, job.Node_Number, job.Language_ID, job.Silent_Error);
    outcome.Error_Location = editor.ErrLocation();
    outcome.Error_Code = editor.ErrCode();
    outcome.Error_Description = editor.ErrDescription();
    outcome.Editing_Default_Node = editor.Editing_Default_Node();
    outcome.SupervisedType_Blind = editor.SupervisedType_Blind();
    return outcome;
}

} // namespace host
