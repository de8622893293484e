#include "scripts/script_player.h"

#include "user_commands.h"

namespace host {

namespace {

// Puts a variable back at the end of a scope, whichever way it ends.
template <typename Value>
class Temporarily {
public:
    Temporarily(Value& variable, Value value) : variable(variable), old(std::exchange(variable, value)) {}
    ~Temporarily() { variable = old; }
    Temporarily(const Temporarily&) = delete;
    Temporarily& operator=(const Temporarily&) = delete;

private:
    Value& variable;
    const Value old;
};

constexpr String_View Not_Loaded = u"no dialog is loaded";

} // namespace

Script_Player::Script_Player(Script_Display& display, Transcript& transcript)
    : display(display), transcript(transcript) {
    display.On_Modal = [this](toolkit::Form& form, toolkit::Input_Driver& used) { Act_On(form, used); };
}

Script_Player::~Script_Player() {
    display.On_Modal = nullptr;
}

bool Script_Player::Run(std::vector<Command> script) {
    commands = std::move(script);
    next = 0;
    stayed_up = false;
    editor.emplace();
    while (next < commands.size())
        Run_Next();
    editor.reset();
    return !stayed_up;
}

void Script_Player::Run_Next() {
    const Command& command = commands[next++];
    if (const Refusal refusal = Perform(command))
        transcript.Refused(command.Line, command.Written, *refusal);
}

Script_Player::Refusal Script_Player::Perform(const Command& command) {
    switch (command.Action) {
    case Verb::Shown:
    case Verb::New:
    case Verb::Blind:
        return Call_Host(command);
    case Verb::Answer:
        display.Queue_Answer(command.Arguments[0].Number);
        return {};
    case Verb::Show:
        return Show(command);
    case Verb::Items:
        return Show_Items(command);
    default:
        return Is_Up() ? Perform_On(*driver, *modal, command) : Refusal(u"no dialog is up");
    }
}

Script_Player::Refusal Script_Player::Call_Host(const Command& command) {
    if (Is_Up())
        return u"the host is blocked while the dialog is up";
    if (command.Action == Verb::Shown) {
        Play_Job(command);
    } else if (command.Action == Verb::New) {
        editor.reset(); // before the new one, as a host that holds one object does
        editor.emplace();
    } else {
        editor->Set_SupervisedType_Blind(command.Arguments[0].Number != 0);
    }
    return {};
}

void Script_Player::Play_Job(const Command& command) {
    const auto& given = command.Arguments;
    Job job;
    job.Config_ID = static_cast<Integer>(given[0].Number);
    job.Partition_ID = static_cast<Integer>(given[1].Number);
    job.Node_Number = static_cast<Integer>(given[2].Number);
    if (given.size() > 3)
        job.Language_ID = static_cast<Integer>(given[3].Number);
    job.Silent_Error = given.size() > 4;
    transcript.Result(Run_Job(*editor, job));
}

toolkit::Form* Script_Player::Loaded_Form() const {
    if (modal && modal->Is_Loaded())
        return modal;
    const auto loaded = toolkit::Loaded_Forms();
    return loaded.empty() ? nullptr : loaded.back();
}

Script_Player::Refusal Script_Player::Show(const Command& command) {
    const toolkit::Form* form = Loaded_Form();
    const auto& names = command.Arguments;
    toolkit::Input_Driver bare; // for a form that is not up
    toolkit::Input_Driver& eyes = form && form == modal ? *driver : bare;
    if (!names.empty() && command.Control() != The_Form) {
        if (!form)
            return Refusal(Not_Loaded);
        for (const Argument& name : names)
            if (const toolkit::Control* control = form->Find(name.Text))
                transcript.Control(*control, eyes.Look(*control));
        return {};
    }
    if (!form) {
        transcript.No_Form();
        return {};
    }
    transcript.Form(*form, eyes.Look(*form));
    if (names.empty())
        for (const toolkit::Control* control : form->Controls())
            transcript.Control(*control, eyes.Look(*control));
    return {};
}

Script_Player::Refusal Script_Player::Show_Items(const Command& command) {
    const toolkit::Form* form = Loaded_Form();
    if (!form)
        return Refusal(Not_Loaded);
    const auto* list = dynamic_cast<const toolkit::List_Control*>(form->Find(command.Control()));
    if (!list)
        return String(command.Control()) + u" has no list";
    transcript.Items(*list);
    return {};
}

void Script_Player::Act_On(toolkit::Form& form, toolkit::Input_Driver& used) {
    const auto keep = form.shared_from_this();
    const Temporarily up(modal, &form);
    const Temporarily with(driver, &used);
    while (form.Is_Visible() && next < commands.size()) {
        Run_Next();
        if (On_Step && form.Is_Visible())
            On_Step(form);
    }
    if (form.Is_Visible())
        Close_At_End(form);
}

void Script_Player::Close_At_End(toolkit::Form& form) {
    display.Answer_To_Close();
    (void)driver->Close(form);
    if (!form.Is_Visible())
        return;
    stayed_up = true;
    form.Hide();
}

} // namespace host
