#include "form_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QWindow>

#include <algorithm>
#include <utility>

#include "design_font.h"
#include "form_picture.h"
#include "form_style.h"
#include "geometry.h"
#include "qt_text.h"
#include "reason_bubble.h"

namespace window {

namespace user_input = toolkit::user_input;
using toolkit::Control;

namespace {

constexpr int Soon = 20; // milliseconds

} // namespace

automation::Failure Application_Ended() {
    return automation::Failure(automation::Status_Unspecified,
                               u"The application ended while the dialog was up");
}

class Form_Window::Form_Dialog final : public QDialog {
public:
    explicit Form_Dialog(Form_Window& window) : window(window) {
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                       Qt::WindowCloseButtonHint | Qt::MSWindowsFixedSizeDialogHint);
        setWindowModality(Qt::ApplicationModal);
        setAttribute(Qt::WA_QuitOnClose, false); // the host goes on
    }

    void reject() override { window.Close_Came(); }

    bool event(QEvent* event) override {
        if (event->type() == QEvent::ApplicationPaletteChange)
            setPalette(Readable(QApplication::palette()));
        return QDialog::event(event);
    }

    bool eventFilter(QObject* widget, QEvent* event) override {
        Control_View* const view = window.view_of_widget.at(widget);
        if (event->type() == QEvent::FocusIn)
            return Focus_In(*widget, *view, *static_cast<QFocusEvent*>(event));
        if (event->type() == QEvent::KeyPress)
            return Pass_On(view, *static_cast<QKeyEvent*>(event));
        if (event->type() == QEvent::MouseButtonRelease)
            Mouse_Up(*widget, *view);
        // The press that has brought a box up would go on beneath it.
        return event->type() == QEvent::MouseButtonPress && window.asking;
    }

protected:
    void closeEvent(QCloseEvent* event) override {
        event->ignore(); // the form decides
        window.Close_Came();
    }
    void keyPressEvent(QKeyEvent* event) override {
        if (!Pass_On(nullptr, *event))
            event->ignore();
    }
    bool focusNextPrevChild(bool forward) override {
        setAttribute(
            Qt::WA_KeyboardFocusChange); // styles mark a focused button for those only who move by keys
        window.Tab_Came(forward);
        return true;
    }

private:
    bool Focus_In(QObject& widget, Control_View& view, const QFocusEvent& event) {
        const auto reason = event.reason();
        Hide_Reason(*this);
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
            reason == Qt::ShortcutFocusReason) {
            // Qt would select the text, where the control has its caret.
            QFocusEvent plain(QEvent::FocusIn, Qt::OtherFocusReason);
            QCoreApplication::sendEvent(&widget, &plain);
            return true;
        }
        // A click is one verb, which moves the focus itself: it goes on when the move brings a box up.
        if (reason != Qt::MouseFocusReason || !qobject_cast<QAbstractButton*>(&widget))
            window.Focus_Came(view);
        return false;
    }
    // Away from the button that was pressed it is no click.
    void Mouse_Up(const QObject& widget, Control_View& view) {
        const auto* button = qobject_cast<const QAbstractButton*>(&widget);
        if (button && !button->isDown() && focusWidget() == button)
            window.Focus_Came(view);
    }
    bool Pass_On(Control_View* view, const QKeyEvent& event) {
        const auto modifiers = event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
        return modifiers == Qt::NoModifier && window.Key_Came(view, event.key(), event.isAutoRepeat());
    }
    Form_Window& window;
};

Form_Window::Form_Window(toolkit::Form& form, Runner& runner)
    : form(&form), runner(runner), style(std::make_unique<Form_Style>()),
      dialog(std::make_unique<Form_Dialog>(*this)) {
    dialog->setStyle(style.get());
    dialog->setWindowIcon(Icon_Of(form));
    dialog->setLayoutDirection(Qt::LeftToRight); // the string table says where everything is
    dialog->setPalette(Readable(QApplication::palette()));
    Set_Scale(Scale_Of(form.Place(), form.Border()));
    at_next_turn.setSingleShot(true);
    QObject::connect(&at_next_turn, &QTimer::timeout, &at_next_turn, [this] { Refresh(); });
    Create_Views();
    Set_Tab_Order();
    Refresh();
}

Form_Window::~Form_Window() = default;

QWidget& Form_Window::Dialog() const {
    return *dialog;
}

QWidget* Form_Window::Widget_Of(const Control& control) const {
    const auto found = view_of.find(&control);
    return found == view_of.end() ? nullptr : &found->second->Widget();
}

void Form_Window::Create_Views() {
    for (Control* control : form->Controls())
        View_In(*control).Widget().raise();
    for (QWidget* widget : dialog->findChildren<QWidget*>())
        if (widget->style() != style.get())
            widget->setStyle(style.get());
}

Control_View& Form_Window::View_In(Control& control) {
    if (const auto found = view_of.find(&control); found != view_of.end())
        return *found->second;
    QWidget* parent = control.Container() ? &View_In(*control.Container()).Widget() : dialog.get();
    Control_View& view = *views.emplace_back(Create_View(control, parent, *this));
    view_of.emplace(&control, &view);
    view_of_widget.emplace(&view.Widget(), &view);
    view.Widget().installEventFilter(dialog.get());
    return view;
}

namespace {

// What a person is told who does not see the control: empty when its label, which Qt knows, tells it.
QString Spoken_Name(const Control& control, const Control& before) {
    const bool button = control.Kind() == toolkit::Control_Kind::Command_Button;
    if (!button && before.Kind() == toolkit::Control_Kind::Label)
        return {};
    if (!button && control.Container())
        return To_Qt(toolkit::Drawn_Caption(control.Container()->Caption()));
    constexpr int Prefix = 3; // "cmd", and the like
    return To_Qt(control.Name()).mid(Prefix);
}

} // namespace

// A label leads to the field that follows it.
void Form_Window::Set_Tab_Order() {
    std::vector<Control*> order = form->Controls();
    std::sort(order.begin(), order.end(),
              [](auto* left, auto* right) { return left->Tab_Index() < right->Tab_Index(); });
    for (std::size_t at = 1; at < order.size(); ++at) {
        QWidget* const widget = Widget_Of(*order[at]);
        QWidget::setTabOrder(Widget_Of(*order[at - 1]), widget);
        if (order[at]->Takes_Focus() && order[at]->Kind() != toolkit::Control_Kind::Command_Button)
            View_In(*order[at - 1]).Set_Buddy(widget);
        if (order[at]->Takes_Focus() && order[at]->Caption().empty())
            widget->setAccessibleName(Spoken_Name(*order[at], *order[at - 1]));
    }
}

void Form_Window::Control_Changed(Control& control, toolkit::Property property) {
    View_In(control).Control_Changed(property);
    Changed();
}

void Form_Window::Focus_Changed() {
    Changed();
}

// A handler that has unloaded the form may go on and change the screen's pointer.
void Form_Window::Pointer_Changed() {
    const bool busy = form && form->Mouse_Pointer() == toolkit::Pointer_Hourglass;
    dialog->setCursor(busy ? Qt::WaitCursor : Qt::ArrowCursor);
}

void Form_Window::Form_Changed(toolkit::Property property) {
    if (property != toolkit::Property::Visible)
        return Changed();
    if (!form->Is_Visible()) {
        dialog->hide();
        Over();
    }
}

void Form_Window::Detach() {
    form = nullptr;
    for (const auto& view : views)
        view->Detach();
    dialog->hide();
    Over();
    when_over = nullptr;
}

void Form_Window::Over() {
    if (when_over)
        when_over();
}

void Form_Window::Changed() {
    changed = true;
    if (!at_next_turn.isActive())
        at_next_turn.start(0);
}

void Form_Window::Refresh() {
    at_next_turn.stop();
    if (!form)
        return;
    if (!May_Read())
        return at_next_turn.start(Soon);
    if (showing || !std::exchange(changed, false))
        return;
    const QScopedValueRollback guard(showing, true);
    Show_Form();
    for (const auto& view : views)
        view->Refresh();
    Show_Focus();
}

void Form_Window::Set_Scale(double wanted) {
    if (std::exchange(scale, wanted) == wanted)
        return;
    style->Scale = scale;
    dialog->setFont(Stand_In(form->Face(), scale));
}

void Form_Window::Show_Form() {
    dialog->setWindowTitle(To_Qt(form->Caption()));
    const toolkit::Rectangle place = form->Place();
    const toolkit::Size border = form->Border();
    Set_Scale(Scale_Of(place, border));
    dialog->setFixedSize(Pixels(place.Width - border.Width, scale),
                         Pixels(place.Height - border.Height, scale));
    // Where a person has put it, it stays when it grows or shrinks.
    if (!shown_place || shown_place->Left != place.Left || shown_place->Top != place.Top)
        dialog->move(Place_On_Screen(place, scale).topLeft());
    shown_place = place;
}

void Form_Window::Show_Focus() {
    Control* const focused = form->Focused();
    QWidget* const wanted = focused ? Widget_Of(*focused) : nullptr;
    QWidget* const actual = dialog->focusWidget();
    if (wanted == actual)
        return;
    if (wanted)
        wanted->setFocus(Qt::OtherFocusReason); // which leaves the selection alone
    else
        actual->clearFocus();
}

void Form_Window::Lie_Over(const Form_Window* lower) {
    dialog->setWindowModality(Qt::WindowModal);
    dialog->winId(); // now it has a handle
    if (lower)
        dialog->windowHandle()->setTransientParent(lower->dialog->windowHandle());
}

void Form_Window::Open(std::function<void()> tell_over) {
    when_over = std::move(tell_over);
    Refresh();
    Pointer_Changed();
    dialog->show();
    dialog->activateWindow();
}

void Form_Window::Put_Away() {
    when_over = nullptr;
    dialog->hide();
}

void Form_Window::Close() {
    Put_Away();
    if (failure)
        std::rethrow_exception(std::exchange(failure, nullptr));
    if (form && form->Is_Visible())
        throw Application_Ended();
}

bool Form_Window::Takes_Input() {
    if (!form || showing || failure || !May_Read())
        return false;
    if (!asking)
        return true;
    for (const auto& view : views) // one of the widgets has been used all the same
        view->Touch();
    Changed();
    return false;
}

void Form_Window::Perform(const std::function<void()>& verb) {
    if (!Takes_Input())
        return;
    changed = true;
    const auto keeping = [verb, form = form] {
        const auto keep = form->shared_from_this();
        verb();
    };
    runner.Run(keeping, [this](const std::exception_ptr& thrown) { Settle(thrown); });
}

void Form_Window::Settle(const std::exception_ptr& thrown) {
    try {
        if (thrown)
            std::rethrow_exception(thrown);
        Refresh();
    } catch (const toolkit::Form_Gone&) {
    } catch (...) {
        failure = std::current_exception();
        Over();
    }
}

void Form_Window::Focus_Came(Control_View& view) {
    Perform([&control = view.Shown()] { user_input::Focus(control); });
}

bool Form_Window::Key_Came(Control_View* view, int key, bool repeated) {
    if (!form || !May_Read())
        return true;
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (!enter && key != Qt::Key_Escape)
        return view && view->Key_Pressed(key);
    if (!repeated)
        Perform([this, enter] {
            user_input::Press_Key(*form, enter ? user_input::Key::Enter : user_input::Key::Escape);
        });
    return true;
}

void Form_Window::Tab_Came(bool forward) {
    Perform([this, forward] {
        if (forward)
            user_input::Press_Key(*form, user_input::Key::Tab);
        else if (Control* previous = form->Previous_Tab_Stop(form->Focused()))
            user_input::Focus(*previous);
    });
}

void Form_Window::Close_Came() {
    Perform([this] { user_input::Close(*form); });
}

} // namespace window
