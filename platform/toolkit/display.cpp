#include "toolkit/display.h"

#include <cstdlib>

#include "automation/create.h"
#include "toolkit/display_factory.h"
#include "toolkit/headless_display.h"

namespace toolkit {

namespace {

class No_Display : public Headless_Display {
public:
    void Run_Modal(Form&) override {
        throw automation::Failure(automation::Status_Unspecified,
                                  u"There is no display to show the dialog on");
    }
    automation::Long Show_Message(const Message&) override { return answer::Not_Shown; }
};

// A screen is there, but the window for it is not: the failure says why.
class Failed_Display final : public No_Display {
public:
    explicit Failed_Display(automation::Failure why) : why(std::move(why)) {}
    void Run_Modal(Form&) override { throw why; }

private:
    const automation::Failure why;
};

struct Thread_State {
    Display* Current = nullptr;
    std::unique_ptr<Display> Own; // of the source; null until it is asked
    automation::Integer Mouse_Pointer = Pointer_Default;
};

Thread_State& State() {
    thread_local Thread_State state;
    return state;
}

bool Is_Set(const char* variable) {
    const char* const value = std::getenv(variable);
    return value && *value != '\0';
}

bool Has_Screen() {
    return Is_Set("DISPLAY") || Is_Set("WAYLAND_DISPLAY") || Is_Set("QT_QPA_PLATFORM");
}

// The reason goes into the description, where whoever reads the error record sees it.
automation::Failure No_Window(const automation::Failure& failure) {
    return automation::Failure(automation::Status_Unspecified,
                               u"There is no window to show the dialog in: " +
                                   (failure.Reason.empty() ? failure.Description : failure.Reason));
}

std::unique_ptr<Display> Own_Display() {
    if (!Has_Screen())
        return std::make_unique<No_Display>();
    try {
        return Open_Display();
    } catch (const automation::Failure& failure) {
        return std::make_unique<Failed_Display>(No_Window(failure));
    }
}

} // namespace

std::unique_ptr<Display> Open_Display(String_View program_identity) {
    const auto source = automation::Create_Bound<Display_Factory>(program_identity);
    Display* display = nullptr;
    automation::Call(source, &Display_Factory::Open_Display, display);
    return std::unique_ptr<Display>(display);
}

std::unique_ptr<Display> Open_Played_Display(Player& player, String_View program_identity) {
    const auto source = automation::Create_Bound<Played_Display_Factory>(program_identity);
    Display* display = nullptr;
    automation::Call(source, &Played_Display_Factory::Open_Played_Display, display, player);
    return std::unique_ptr<Display>(display);
}

Display& Current_Display() {
    Thread_State& state = State();
    if (state.Current)
        return *state.Current;
    if (!state.Own)
        state.Own = Own_Display();
    return *state.Own;
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
