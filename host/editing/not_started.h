// Why no Display was opened, as what ends the program.
#pragma once

#include "automation/failure.h"
#include "automation/text.h"
#include "process/errors.h"

namespace host {

inline Start_Error Not_Started(const automation::Failure& failure) {
    return Start_Error(automation::To_UTF8(failure.Reason.empty() ? failure.Description : failure.Reason));
}

} // namespace host
