// A thread of our own for Qt, for a process that has no Qt application.
#pragma once

#include <future>
#include <mutex>

class QCoreApplication;

namespace window {

// The application is there once it is constructed, and gone when it is destroyed; the thread is kept for the
// next one, because some of Qt's own objects belong to it for good. Throws Cannot_Show.
class Gui_Thread {
public:
    Gui_Thread();
    ~Gui_Thread();
    Gui_Thread(const Gui_Thread&) = delete;
    Gui_Thread& operator=(const Gui_Thread&) = delete;

    // Held by who makes one, or lets it go.
    static inline std::mutex Coming_And_Going;

    // Throws Cannot_Show once the display has gone away under one: Qt cannot use another in this process.
    static void Require_Display();

    // False when somebody else has ended the application.
    bool Is_Running() const;

private:
    void Run(std::promise<void>& started);
    void Set_Application(QCoreApplication* now);

    mutable std::mutex mutex;
    QCoreApplication* application = nullptr;
    std::future<void> ended;
};

} // namespace window
