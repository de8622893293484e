// One widget for one control.
//
// A view shows its control and hands what a person does to the Input. It never changes its control otherwise,
// and does not touch it after Detach.
#pragma once

#include <QWidget>

#include <functional>
#include <memory>

#include "toolkit/control.h"

namespace window {

// What a view needs of the window that it is in.
class Input {
public:
    virtual ~Input() = default;
    // Runs a verb, unless the widgets are only just being brought up to date; after it they show whatever the
    // form holds. Nothing escapes from it. The form may be gone when it returns.
    // It also may return before the verb has ended, when that waits for a person: what the verb uses has to
    // outlive its caller.
    virtual void Perform(const std::function<void()>& verb) = 0;
    // The controls may be read.
    virtual bool May_Read() const = 0;
    // How much larger than designed everything is.
    virtual double Scale() const = 0;
};

class Control_View {
public:
    virtual ~Control_View() = default;
    Control_View(const Control_View&) = delete;
    Control_View& operator=(const Control_View&) = delete;

    toolkit::Control& Shown() const { return control; }
    QWidget& Widget() const { return *widget; }

    void Control_Changed(toolkit::Property property);
    // Makes the widget equal to the control, if that changed since.
    void Refresh();
    // The control goes.
    virtual void Detach() {}

    // The label of a field gets its access key from here.
    virtual void Set_Buddy(QWidget*) {}
    // A key that would do something to the control in its own right; false: not one.
    virtual bool Key_Pressed(int) { return false; }
    // The widget is out of step with the control: a person has used it.
    void Touch() { changed = true; }

protected:
    Control_View(toolkit::Control& control, QWidget* widget, Input& input);

    virtual void Show() = 0;
    virtual void Entries_Changed() {}
    double Scale() const { return input.Scale(); }
    int Scaled(int pixels) const;
    // Chooses the font in which the caption takes up no more than the pixels.
    void Fit_Caption(int pixels);

private:
    toolkit::Control& control;
    QWidget* const widget; // its parent owns it
    Input& input;
    double shown_scale;
    bool changed = true;
    bool entries_changed = true;
    QString fitted_caption;
    int fitted_width = -1;
};

// The view of any control, its widget inside `parent`. `input` outlives it.
std::unique_ptr<Control_View> Create_View(toolkit::Control& control, QWidget* parent, Input& input);

} // namespace window
