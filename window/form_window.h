// The window of one form: its dialog, the views of its controls, and the way between both.
//
// Changes are collected and shown in one go: after each verb, before anything blocks, and otherwise when the
// event loop is reached again. A verb may unload the form while Qt is inside the handler of one of the
// widgets, so whoever runs the window keeps it until the event loop has ended.
#pragma once

#include <QDialog>
#include <QEventLoop>
#include <QStyle>
#include <QTimer>

#include <exception>
#include <optional>
#include <unordered_map>
#include <vector>

#include "control_view.h"
#include "toolkit/user_input.h"

namespace window {

class Form_Window final : public Input {
public:
    explicit Form_Window(toolkit::Form& form);
    ~Form_Window() override;

    QWidget& Dialog() const;
    QWidget* Widget_Of(const toolkit::Control& control) const; // null when it is none of the form's

    void Control_Changed(toolkit::Control& control, toolkit::Property property);
    void Form_Changed(toolkit::Property property);
    void Focus_Changed();
    void Pointer_Changed();
    // The form goes: nothing touches it any more, and Run ends.
    void Detach();

    // Shows what has changed since the last time.
    void Refresh();
    // Takes input until the form is hidden or gone. Throws what a handler threw.
    void Run();

    void Perform(const std::function<void()>& verb) override;

private:
    class Form_Dialog;

    void Create_Views();
    Control_View& View_In(toolkit::Control& control);
    void Set_Tab_Order();
    void Changed();
    void Show_Form();
    void Show_Focus();

    // What the dialog passes on.
    void Focus_Came(Control_View& view);
    bool Key_Came(Control_View* view, int key, bool repeated);
    void Tab_Came(bool forward);
    void Close_Came();

    toolkit::Form* form; // null: gone
    const std::unique_ptr<QStyle> style;
    std::vector<std::unique_ptr<Control_View>> views;
    std::unordered_map<const toolkit::Control*, Control_View*> view_of;
    std::unordered_map<const QObject*, Control_View*> view_of_widget;
    std::optional<toolkit::Rectangle> shown_place;
    bool changed = true;
    QTimer at_next_turn; // of the event loop
    bool showing = false;
    QEventLoop* loop = nullptr;
    std::exception_ptr failure;
    std::unique_ptr<Form_Dialog> dialog; // last: the widgets go before what they look at
};

} // namespace window
