// What a person could not read on a form: texts that overflow their places, and access keys that two controls
// share. Pure; on the form's thread.
#pragma once

#include <string>
#include <vector>

#include "toolkit/form.h"

namespace host {

struct Form_Problem {
    toolkit::String Caption; // the text that it is about; empty for a field
    std::string Reason;
};

std::vector<Form_Problem> Problems_Of(const toolkit::Form& form);

} // namespace host
