// What a bridged Display has on Qt's thread: its windows and message boxes.
//
// Made on the form's thread; from then on it belongs to Qt's and goes with the application at the latest. Its
// procedures are called there, by what the bridge hands over.
#pragma once

#include <QMessageBox>
#include <QPointer>

#include <memory>
#include <vector>

#include "bridge.h"
#include "form_window.h"
#include "screen_pointer.h"
#include "toolkit/display.h"

namespace window {

class Window_Host final : public QObject {
public:
    Window_Host(QCoreApplication& application, std::shared_ptr<Bridge> bridge);
    ~Window_Host() override;

    // A window over the one that was added last, still to be opened.
    Form_Window& Add(toolkit::Form& form, Runner& runner);
    // Takes the window that was added last away. Throws what a handler threw.
    void Close();
    // The same without a word of it, if the window is still there.
    void Drop();
    QMessageBox& Ask(const toolkit::Message& message, const std::function<void(automation::Long)>& answered);
    // Takes the box that was put last away, if it is still there.
    void Drop_Box();
    // Of the form's thread; seen as long as that has a window.
    void Show_Pointer(bool busy);

    // The application goes: the form's thread waits for nothing any more.
    void Lose();

    // The same when Qt must not be touched.
    void Abandon() { bridge->Lose(); }

    bool event(QEvent* event) override;

private:
    const std::shared_ptr<Bridge> bridge;
    std::vector<std::unique_ptr<Form_Window>> windows; // the innermost last
    std::vector<QPointer<QMessageBox>> boxes;
    Screen_Pointer pointer;
};

// Nothing of Qt works any more, so its thread will not serve the others again.
void Lose_All();

} // namespace window
