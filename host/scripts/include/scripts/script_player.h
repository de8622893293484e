// Plays an editing script: the lines between two jobs act on the host's object, the lines that come while a
// dialog is up act on the dialog.
//
// The display and the transcript belong to the caller and outlive the player; the display has to be the
// calling thread's (alone or behind a Box_Reporter), or the player of the one that is. Everything comes on
// that thread.
#pragma once

#include "scripts/script_display.h"
#include "transcript/transcript.h"

namespace host {

class Script_Player {
public:
    Script_Player(Script_Display& display, Transcript& transcript);
    ~Script_Player();
    Script_Player(const Script_Player&) = delete;
    Script_Player& operator=(const Script_Player&) = delete;

    // Called after each command that leaves the dialog up.
    std::function<void(toolkit::Form&)> On_Step;

    // False when the dialog stayed up after the script's end. Throws automation::Failure when the component
    // cannot be created.
    bool Run(std::vector<Command> script);

private:
    using Refusal = toolkit::Input_Driver::Refusal;

    void Run_Next();
    Refusal Perform(const Command& command);
    Refusal Call_Host(const Command& command);
    void Play_Job(const Command& command);
    Refusal Show(const Command& command);
    Refusal Show_Items(const Command& command);

    void Act_On(toolkit::Form& form, toolkit::Input_Driver& used);
    void Close_At_End(toolkit::Form& form);
    bool Is_Up() const { return modal && modal->Is_Visible(); }
    toolkit::Form* Loaded_Form() const;

    Script_Display& display;
    Transcript& transcript;
    std::optional<style_node::Editor> editor; // the host's one object
    std::vector<Command> commands;
    std::size_t next = 0;
    toolkit::Form* modal = nullptr;
    toolkit::Input_Driver* driver = nullptr; // of the modal form
    bool stayed_up = false;
};

} // namespace host
