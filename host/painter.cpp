#include "painter.h"

#include "automation/create.h"
#include "automation/text.h"
#include "host/errors.h"

namespace host {

void Painter::Paint(toolkit::Form& form) {
    try {
        if (!source)
            source =
                automation::Create_Bound<toolkit::Display_Source>(toolkit::Display_Source::Program_Identity);
        automation::Check(source->Save_Picture(form, path));
    } catch (const automation::Failure& failure) {
        problem = automation::To_UTF8(failure.Reason.empty() ? failure.Description : failure.Reason);
    }
}

void Painter::Check() const {
    if (!problem.empty())
        throw Start_Error(problem);
}

} // namespace host
