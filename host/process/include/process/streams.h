// The standard streams of a run.
#pragma once

#include <istream>
#include <ostream>
#include <string>

namespace host {

struct Streams {
    std::istream& In;
    std::ostream& Out;
    std::ostream& Errors;
};

// Throws Outcome_Error, which says `before` first, when standard output could not be written.
void Require_Written(const Streams& streams, const std::string& before = "");
// One line for a person; what does not come from the program itself is escaped.
void Complain(const Streams& streams, const std::string& message);

} // namespace host
