// Input_Driver on Qt's thread, for dialogs that belong to others.
#pragma once

#include <QMessageBox>
#include <QPushButton>

#include <future>
#include <thread>

#include "window/any_thread.h"
#include "window_fixture.h"

namespace window_test {

using namespace std::chrono_literals;

// Does it on Qt's thread, and waits for it.
inline void On_Qt(const std::function<void()>& work) {
    if (!QMetaObject::invokeMethod(qApp, work, Qt::BlockingQueuedConnection))
        throw std::logic_error("Qt's thread does not answer");
}

// The dialog or message box of that title, once it is up.
inline void With(const char* title, const std::function<void(QDialog&)>& hand) {
    bool found = false;
    const auto look = [&] {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->isVisible() && widget->windowTitle() == QLatin1String(title)) {
                found = true;
                return hand(*qobject_cast<QDialog*>(widget));
            }
    };
    for (int tries = 0; tries < 2000 && (On_Qt(look), !found); ++tries)
        std::this_thread::sleep_for(5ms);
    EXPECT_TRUE(found) << title << " is not up";
}

inline void Type(const char* title, const char* field, const char* text) {
    With(title, [&](QDialog& dialog) { QTest::keyClicks(dialog.findChild<QWidget*>(field), text); });
}
inline void Click(const char* title, const char* button) {
    With(title, [&](QDialog& dialog) {
        QTest::mouseClick(dialog.findChild<QWidget*>(button), Qt::LeftButton, {}, {8, 8});
    });
}
inline void Answer(const char* title, QMessageBox::StandardButton button) {
    With(title, [&](QDialog& box) { qobject_cast<QMessageBox*>(&box)->button(button)->click(); });
}

// A thread with a Display and a form of its own; `Body` shows the form.
class Form_Thread {
public:
    using Body = std::function<void(Small_Form&)>;
    explicit Form_Thread(
        String_View title, Body body = [](auto& form) { form.Show_Modal(); })
        : end(std::async(std::launch::async, [title = String(title), body] {
              const auto display = window::Open_Display();
              toolkit::Set_Display(display.get());
              const auto form = std::make_shared<Small_Form>();
              form->Set_Caption(title);
              form->On["cmdOK_Click"] = [&] { form->Hide(); };
              body(*form);
              toolkit::Discard_All_Forms();
              toolkit::Set_Display(nullptr);
          })) {}
    void Ends() {
        ASSERT_EQ(end.wait_for(20s), std::future_status::ready) << "it hangs";
        end.get();
    }

private:
    std::future<void> end;
};

} // namespace window_test
