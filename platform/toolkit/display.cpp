#include "toolkit/display.h"

namespace toolkit {

namespace {

class No_Display final : public Display {
public:
    Size Screen_Size() const override { return {15360, 11520}; }
    void Form_Loaded(Form&) override {}
    void Form_Unloaded(Form&) override {}
    void Form_Changed(Form&, Property) override {}
    void Control_Changed(Control&, Property) override {}
    void Focus_Changed(Form&) override {}
    void Pointer_Changed() override {}
    void Run_Modal(Form&) override {
        throw automation::Failure(automation::Status_Unspecified,
                                  u"There is no display to show the dialog on");
    }
    void Process_Pending_Messages() override {}
    automation::Long Show_Message(const Message&) override { return answer::Not_Shown; }
};

struct Thread_State {
    Display* Current = nullptr;
    automation::Integer Mouse_Pointer = Pointer_Default;
};

Thread_State& State() {
    thread_local Thread_State state;
    return state;
}

} // namespace

Display& Current_Display() {
    static No_Display none;
    return State().Current ? *State().Current : none;
}

void Set_Display(Display* display) {
    State().Current = display;
}

automation::Long Show_Message(const Message& message) {
    return Current_Display().Show_Message(message);
}

namespace screen {

Size Screen_Size() {
    return Current_Display().Screen_Size();
}
automation::Integer Mouse_Pointer() {
    return State().Mouse_Pointer;
}

void Set_Mouse_Pointer(automation::Integer pointer) {
    if (std::exchange(State().Mouse_Pointer, pointer) != pointer)
        Current_Display().Pointer_Changed();
}

} // namespace screen

} // namespace toolkit
