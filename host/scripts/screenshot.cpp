#include "scripts/screenshot.h"

#include "automation/create.h"
#include "automation/text.h"
#include "process/errors.h"

namespace host {

void Screenshot::Take(toolkit::Form& form) {
    try {
        if (!maker)
            maker = automation::Create_Bound<toolkit::Picture_Maker>(toolkit::Window_Identity);
        automation::Call(maker, &toolkit::Picture_Maker::Save_Picture, form, path);
    } catch (const automation::Failure& failure) {
        problem = automation::To_UTF8(failure.Reason.empty() ? failure.Description : failure.Reason);
    }
}

void Screenshot::Check() const {
    if (!problem.empty())
        throw Start_Error(problem);
}

} // namespace host
