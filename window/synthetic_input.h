// Input_Driver that use a form's window as a person does: by key strokes and mouse clicks that its window is
// sent.
//
// A verb runs on the form's thread and ends when everything that came of it has ended, boxes included. Each
// press and each release is a hand-over of its own, because what a press does may wait for a person. Nothing
// can be put on the clipboard unasked, so an edit of several characters comes as from an input method, and
// the focus goes to a control in the way of its access key.
#pragma once

#include <functional>

#include "form_window.h"
#include "toolkit/input_driver.h"

class QAbstractItemView;
class QWindow;

namespace window {

class Synthetic_Input final : public toolkit::Input_Driver {
public:
    // Does something on Qt's thread; false: that has gone.
    using On_Qt = std::function<bool(const std::function<void()>&)>;

    // The window outlives the driver.
    Synthetic_Input(Form_Window& window, On_Qt on_qt) : window(window), on_qt(std::move(on_qt)) {}

    // What the widgets show; what the controls hold once Qt's thread has gone.
    toolkit::Control_Snapshot Look(const toolkit::Control& control) override;
    toolkit::Form_Snapshot Look(const toolkit::Form& form) override;
    Refusal Focus(toolkit::Control& control) override;
    Refusal Enter_Text(toolkit::Control& control) override;
    Refusal Type(toolkit::Control& control, toolkit::String_View character) override;
    Refusal Backspace(toolkit::Control& control) override;
    Refusal Replace(toolkit::Control& control, std::size_t start, std::size_t length,
                    toolkit::String_View text) override;
    Refusal Pick(toolkit::Control& control, automation::Long index) override;
    Refusal Press(toolkit::Control& control) override;
    Refusal Press_Key(toolkit::Form& form, toolkit::user_input::Key key) override;
    Refusal Close(toolkit::Form& form) override;

private:
    Refusal Do(const std::function<void()>& work);
    Refusal Stroke(int key, const QString& text = {});
    Refusal Commit(toolkit::Control& control, const QString& text);
    Refusal Click(const std::function<void(QWindow*& over, QPoint& place)>& aim);
    Refusal Move_Focus(toolkit::Control& control);
    Refusal Click_Entry(toolkit::Control& control, int row);
    void Await_Activation();

    Form_Window& window;
    const On_Qt on_qt;
    bool inactive = false; // the window system does not activate the window
};

// Clicks the button of a window that is only just being shown, as soon as its thread takes input again.
void Click_Button_Soon(QWidget& button);

} // namespace window
