// A thread of our own for Qt, for a process that has no Qt application.
#pragma once

#include <exception>
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

    // False once the application ends, on whoever's wish.
    bool Is_Running() const;
    // Waits for the end of an application that is not running any more.
    void Await_End();

private:
    enum class Stage { Starts, Runs, Ends, Has_Ended };

    void Run();
    void Set(Stage now);

    Stage stage = Stage::Starts;
    QCoreApplication* application = nullptr; // while it runs
    std::exception_ptr failure;              // why it did not start
};

} // namespace window
