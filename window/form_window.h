// The window of one form: its dialog, the views of its controls, and the way between both.
//
// Changes are collected and shown in one go: after each verb, before anything blocks, and otherwise when the
// event loop is reached again. A verb may unload the form while Qt is inside the handler of one of the
// widgets, so whoever runs the window keeps it until the event loop has been reached again. The form may
// belong to another thread: it is read only while the runner allows it, and used only by the runner's verbs.
#pragma once

#include <QDialog>
#include <QTimer>

#include <exception>
#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

#include "control_view.h"
#include "runner.h"
#include "toolkit/user_input.h"

namespace window {

class Form_Style;

// What a modal dialog ends with when its event loop does.
automation::Failure Application_Ended();

class Form_Window final : public Input {
public:
    // `runner` outlives it.
    Form_Window(toolkit::Form& form, Runner& runner);
    ~Form_Window() override;

    QWidget& Dialog() const;
    QWidget* Widget_Of(const toolkit::Control& control) const; // null when it is none of the form's

    void Control_Changed(toolkit::Control& control, toolkit::Property property);
    void Form_Changed(toolkit::Property property);
    void Focus_Changed();
    void Pointer_Changed();
    // The form goes: nothing touches it any more, and it is over.
    void Detach();

    // Shows what has changed since the last time.
    void Refresh();
    // The dialog is to block the one that it lies over, if any, and no other. Before Open.
    void Lie_Over(const Form_Window* lower);
    // Takes input until the form is hidden or gone, or a handler has thrown; `when_over` is told, perhaps
    // more than once.
    void Open(std::function<void()> when_over);
    // Takes no more input, and tells nobody any more.
    void Put_Away();
    // The same; throws what a handler threw.
    void Close();

    // While a message box is up over the dialog, nothing else is done to the form.
    void Set_Asking(bool now) { asking = now; }

    void Perform(const std::function<void()>& verb) override;
    bool May_Read() const override { return runner.May_Read(); }
    double Scale() const override { return scale; }

private:
    class Form_Dialog;

    bool Takes_Input();
    void Create_Views();
    Control_View& View_In(toolkit::Control& control);
    void Set_Tab_Order();
    void Changed();
    void Set_Scale(double wanted);
    void Show_Form();
    void Show_Focus();
    void Settle(const std::exception_ptr& thrown);
    void Over();

    // What the dialog passes on.
    void Focus_Came(Control_View& view);
    bool Key_Came(Control_View* view, int key, bool repeated);
    void Tab_Came(bool forward);
    void Close_Came();

    toolkit::Form* form; // null: gone
    Runner& runner;
    const std::unique_ptr<Form_Style> style;
    std::vector<std::unique_ptr<Control_View>> views;
    std::unordered_map<const toolkit::Control*, Control_View*> view_of;
    std::unordered_map<const QObject*, Control_View*> view_of_widget;
    std::optional<toolkit::Rectangle> shown_place;
    double scale = 0; // until there are views
    bool changed = true;
    QTimer at_next_turn; // of the event loop
    bool showing = false;
    bool asking = false;
    std::function<void()> when_over;
    std::exception_ptr failure;
    std::unique_ptr<Form_Dialog> dialog; // last: the widgets go before what they look at
};

} // namespace window
