#include "synthetic_input.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QWindow>

#include "event_turn.h"
#include "qt_text.h"
#include "snapshot.h"

namespace window {

namespace user_input = toolkit::user_input;
using toolkit::Control;
using Refusal = toolkit::Input_Driver::Refusal;

namespace {

void Key_Event(QEvent::Type type, int key, const QString& text) {
    QKeyEvent event(type, key, Qt::NoModifier, text);
    if (QWindow* const focused = QGuiApplication::focusWindow())
        QCoreApplication::sendEvent(focused, &event);
    Take_Turn(QEventLoop::AllEvents);
}

void Mouse_Event(QWindow& over, QPoint place, QEvent::Type type) {
    const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
    QMouseEvent event(type, place, over.mapToGlobal(place), Qt::LeftButton, held, Qt::NoModifier);
    QCoreApplication::sendEvent(&over, &event);
    Take_Turn(QEventLoop::AllEvents);
}

QLineEdit* Line_Of(QWidget& widget) {
    if (auto* combo = qobject_cast<QComboBox*>(&widget))
        return combo->lineEdit();
    return qobject_cast<QLineEdit*>(&widget);
}

QAbstractItemView& Entries_Of(QWidget& widget) {
    if (auto* combo = qobject_cast<QComboBox*>(&widget))
        return *combo->view();
    return static_cast<QAbstractItemView&>(widget);
}

// What a line edit takes as a key; the rest has no key and is composed.
bool Has_Key(const QString& character) {
    return character.at(0).isPrint() || (character.at(0).isHighSurrogate() && character.size() > 1);
}

} // namespace

// On Qt's thread

void Synthetic_Input::Await_Activation() {
    constexpr int Long_Enough = 2000; // milliseconds
    QElapsedTimer waiting;
    waiting.start();
    Take_Turn(QEventLoop::AllEvents);
    while (!inactive && window.Dialog().isVisible() && !QGuiApplication::focusWindow()) {
        window.Dialog().activateWindow();
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        inactive = waiting.hasExpired(Long_Enough);
    }
}

void Click_Button_Soon(QWidget& button) {
    const auto click = [&button] {
        const QPointer over = button.window()->windowHandle();
        const QPoint place = button.mapTo(button.window(), button.rect().center());
        Mouse_Event(*over, place, QEvent::MouseButtonPress);
        if (over)
            Mouse_Event(*over, place, QEvent::MouseButtonRelease);
    };
    QMetaObject::invokeMethod(&button, click, Qt::QueuedConnection);
}

// On the form's thread

Refusal Synthetic_Input::Do(const std::function<void()>& work) {
    const auto ready = [&] {
        Await_Activation();
        if (!inactive)
            work();
    };
    if (!on_qt(ready))
        return u"the window has gone away";
    return inactive ? Refusal(u"the window cannot be made the active one") : Refusal();
}

toolkit::Control_Snapshot Synthetic_Input::Look(const Control& control) {
    toolkit::Control_Snapshot seen = toolkit::Held_By(control);
    on_qt([&] {
        Take_Turn(QEventLoop::AllEvents); // the widgets come up to date
        seen = Snapshot_Of(control, *window.Widget_Of(control), window.Scale());
    });
    return seen;
}

toolkit::Form_Snapshot Synthetic_Input::Look(const toolkit::Form& form) {
    toolkit::Form_Snapshot seen = toolkit::Held_By(form);
    on_qt([&] {
        Take_Turn(QEventLoop::AllEvents);
        seen = Snapshot_Of(form, window.Dialog(), window.Scale());
    });
    return seen;
}

Refusal Synthetic_Input::Stroke(int key, const QString& text) {
    if (auto refusal = Do([&] { Key_Event(QEvent::KeyPress, key, text); }))
        return refusal;
    return Do([&] { Key_Event(QEvent::KeyRelease, key, text); });
}

Refusal Synthetic_Input::Click(const std::function<void(QWindow*& over, QPoint& place)>& aim) {
    QWindow* found = nullptr;
    QPointer<QWindow> over;
    QPoint place;
    const auto press = [&] {
        aim(found, place);
        over = found;
        if (over)
            Mouse_Event(*over, place, QEvent::MouseButtonPress);
    };
    if (auto refusal = Do(press))
        return refusal;
    if (!found)
        return {};
    return Do([&] {
        if (over)
            Mouse_Event(*over, place, QEvent::MouseButtonRelease);
    });
}

Refusal Synthetic_Input::Move_Focus(Control& control) {
    if (control.Owner_Form().Focused() == &control)
        return {};
    return Do([&] { window.Widget_Of(control)->setFocus(Qt::ShortcutFocusReason); });
}

Refusal Synthetic_Input::Focus(Control& control) {
    if (auto refusal = user_input::Can_Focus(control))
        return refusal;
    return Move_Focus(control);
}

Refusal Synthetic_Input::Enter_Text(Control& control) {
    if (auto refusal = user_input::Can_Edit(control))
        return refusal;
    if (control.Owner_Form().Focused() == &control)
        return {};
    if (auto refusal = Move_Focus(control))
        return refusal;
    // A handler that the move ran may have switched it off.
    return user_input::Can_Edit(control) ? Refusal() : Stroke(Qt::Key_End);
}

Refusal Synthetic_Input::Type(Control& control, toolkit::String_View character) {
    if (auto refusal = user_input::Can_Edit(control))
        return refusal;
    const QString text = To_Qt(character);
    if (!Has_Key(text))
        return Commit(control, text);
    return Stroke(text.size() == 1 ? text.at(0).toUpper().unicode() : int{Qt::Key_unknown}, text);
}

Refusal Synthetic_Input::Commit(Control& control, const QString& text) {
    return Do([&] {
        QInputMethodEvent event;
        event.setCommitString(text);
        QCoreApplication::sendEvent(window.Widget_Of(control), &event);
    });
}

Refusal Synthetic_Input::Backspace(Control& control) {
    if (auto refusal = user_input::Can_Edit(control))
        return refusal;
    return Stroke(Qt::Key_Backspace);
}

Refusal Synthetic_Input::Replace(Control& control, std::size_t start, std::size_t length,
                                 toolkit::String_View text) {
    if (auto refusal = user_input::Can_Edit(control))
        return refusal;
    if (auto refusal = Move_Focus(control))
        return refusal;
    if (user_input::Can_Edit(control))
        return {};
    bool selected = false;
    const auto select = [&] {
        QLineEdit& line = *Line_Of(*window.Widget_Of(control));
        const auto size = static_cast<std::size_t>(line.text().size());
        const auto first = std::min(start, size);
        line.setCursorPosition(static_cast<int>(first));
        line.setSelection(static_cast<int>(first), static_cast<int>(std::min(length, size - first)));
        selected = line.hasSelectedText();
    };
    if (auto refusal = Do(select))
        return refusal;
    if (text.empty())
        return selected ? Stroke(Qt::Key_Delete) : Refusal();
    return Commit(control, To_Qt(text));
}

Refusal Synthetic_Input::Pick(Control& control, automation::Long index) {
    if (auto refusal = user_input::Can_Pick(control, index))
        return refusal;
    if (auto refusal = Move_Focus(control))
        return refusal;
    if (user_input::Can_Pick(control, index))
        return {};
    if (control.Kind() == toolkit::Control_Kind::Combo_Box)
        if (auto refusal = Stroke(Qt::Key_F4)) // opens the list
            return refusal;
    return Click_Entry(control, index);
}

Refusal Synthetic_Input::Click_Entry(Control& control, int row) {
    return Click([&](QWindow*& over, QPoint& place) {
        QAbstractItemView& view = Entries_Of(*window.Widget_Of(control));
        const QModelIndex entry = view.model()->index(row, 0);
        view.scrollTo(entry);
        place = view.viewport()->mapTo(view.window(), view.visualRect(entry).center());
        over = view.isVisible() ? view.window()->windowHandle() : nullptr;
    });
}

// A button that lies under another control, or outside the window, is reached by keys.
Refusal Synthetic_Input::Press(Control& control) {
    if (auto refusal = user_input::Can_Press(control))
        return refusal;
    bool in_reach = false;
    const auto aim = [&](QWindow*& over, QPoint& place) {
        constexpr int Mark = 7; // pixels: the middle of an option's mark
        QWidget& dialog = window.Dialog();
        QWidget* const widget = window.Widget_Of(control);
        place = widget->mapTo(&dialog, QPoint(Mark, widget->height() / 2));
        in_reach = dialog.rect().contains(place) && dialog.childAt(place) == widget;
        over = in_reach ? dialog.windowHandle() : nullptr;
    };
    if (auto refusal = Click(aim); refusal || in_reach)
        return refusal;
    if (auto refusal = Move_Focus(control))
        return refusal;
    return user_input::Can_Press(control) ? Refusal() : Stroke(Qt::Key_Space, QStringLiteral(" "));
}

Refusal Synthetic_Input::Press_Key(toolkit::Form& form, user_input::Key key) {
    if (auto refusal = user_input::Can_Press_Key(form, key))
        return refusal;
    switch (key) {
    case user_input::Key::Enter:
        return Stroke(Qt::Key_Return, QStringLiteral("\r"));
    case user_input::Key::Escape:
        return Stroke(Qt::Key_Escape, QStringLiteral("\x1B"));
    case user_input::Key::Tab:
        return Stroke(Qt::Key_Tab, QStringLiteral("\t"));
    }
    return {};
}

Refusal Synthetic_Input::Close(toolkit::Form& form) {
    if (auto refusal = user_input::Can_Close(form))
        return refusal;
    return Do([&] { window.Dialog().close(); });
}

} // namespace window
