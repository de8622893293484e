#include "host/job.h"

#include "automation/create.h"

namespace host {

namespace {

using automation::Check;
using automation::Status;
using style_node::_Busyness_Rules;

template <typename Value>
Value Read(_Busyness_Rules& editor, Status (_Busyness_Rules::*property)(Value&)) {
    Value value{};
    Check((editor.*property)(value));
    return value;
}

} // namespace

Editor Create_Editor() {
    return automation::Create_Bound<_Busyness_Rules>(_Busyness_Rules::Program_Identity);
}

Job_Outcome Run_Job(const Editor& editor, const Job& job) {
    _Busyness_Rules& object = *editor;
    style_node::Boolean shown = style_node::False;
    Check(object.Shown(job.Config_ID, job.Partition_ID, job.Node_Number, job.Language_ID,
                       job.Silent_Error ? style_node::True : style_node::False, shown));
    Job_Outcome outcome;
    outcome.Shown = shown != style_node::False;
    outcome.Error_Location = Read(object, &_Busyness_Rules::Get_ErrLocation).View();
    outcome.Error_Code = Read(object, &_Busyness_Rules::Get_ErrCode);
    outcome.Error_Description = Read(object, &_Busyness_Rules::Get_ErrDescription).View();
    outcome.Editing_Default_Node =
        Read(object, &_Busyness_Rules::Get_Editing_Default_Node) != style_node::False;
    outcome.SupervisedType_Blind =
        Read(object, &_Busyness_Rules::Get_SupervisedType_Blind) != style_node::False;
    return outcome;
}

} // namespace host
