#include "process/streams.h"

#include "process/errors.h"
#include "process/visible_text.h"

namespace host {

void Require_Written(const Streams& streams, const std::string& before) {
    if (!streams.Out.flush())
        throw Outcome_Error(before + "standard output could not be written; check where it goes");
}

void Complain(const Streams& streams, const std::string& message) {
    streams.Errors << "style-editor: " << Visible_Text(message) << std::endl;
}

} // namespace host
