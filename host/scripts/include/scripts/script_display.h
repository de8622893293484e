// A Display without a screen: message boxes get the answers that the script has queued, and a modal dialog
// is handed to whoever plays the script. A window that is played does the same with it as its player.
//
// Belongs to one thread.
#pragma once

#include <deque>
#include <functional>

#include "scripts/script.h"
#include "toolkit/headless_display.h"
#include "toolkit/input_driver.h"

namespace host {

class Script_Display final : public toolkit::Headless_Display, public toolkit::Player {
public:
    // Acts on the dialog until it is not visible any more.
    std::function<void(toolkit::Form&, toolkit::Input_Driver&)> On_Modal;

    void Queue_Answer(Long answer) { answers.push_back(answer); }
    // From now on boxes are answered so that a dialog closes: a save question with discard, others with OK.
    void Answer_To_Close() { closing = true; }

    void Run_Modal(toolkit::Form& form) override { Play(form, bare); }
    Long Show_Message(const toolkit::Message& message) override { return Answer(message); }

    void Play(toolkit::Form& form, toolkit::Input_Driver& driver) override { On_Modal(form, driver); }
    Long Answer(const toolkit::Message& message) override;

private:
    toolkit::Input_Driver bare;
    std::deque<Long> answers;
    bool closing = false;
};

} // namespace host
