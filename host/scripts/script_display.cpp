#include "scripts/script_display.h"

namespace host {

Long Script_Display::Answer(const toolkit::Message& message) {
    namespace answer = toolkit::answer;
    if (closing)
        return message.Asks() ? answer::Discard : answer::OK;
    if (answers.empty())
        return message.Asks() ? answer::Cancel : answer::OK;
    const Long queued = answers.front();
    answers.pop_front();
    return queued;
}

} // namespace host
