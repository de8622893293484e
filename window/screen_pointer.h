// The hourglass of a Display, over all of the application's windows.
#pragma once

#include <QGuiApplication>

#include <utility>

namespace window {

class Screen_Pointer {
public:
    Screen_Pointer() = default;
    ~Screen_Pointer() { Show(false); }
    Screen_Pointer(const Screen_Pointer&) = delete;
    Screen_Pointer& operator=(const Screen_Pointer&) = delete;

    void Show(bool busy) {
        if (std::exchange(shown, busy) == busy)
            return;
        if (busy)
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        else
            QGuiApplication::restoreOverrideCursor();
    }

private:
    bool shown = false;
};

} // namespace window
