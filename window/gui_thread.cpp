#include "gui_thread.h"

#include <QThread>

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <thread>
#include <utility>

#include "application.h"
#include "qt_side.h"
#include "window/qt_display.h"

namespace window {

namespace {

std::atomic<bool> stranded = false;

// Qt ends the process when its display goes away. The host is to live on: its threads are told, and the one
// that would end it stops for good.
[[noreturn]] void Strand() {
    stranded = true;
    Lose_All();
    for (;;)
        pause();
}

// Listens to what Qt says, as long as the application is ours.
class Listener {
public:
    Listener() { former = qInstallMessageHandler(Hear); }
    ~Listener() {
        const auto present = qInstallMessageHandler(former);
        if (present != Hear) // the host has set its own since
            qInstallMessageHandler(present);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

private:
    static void Hear(QtMsgType type, const QMessageLogContext& context, const QString& text) {
        // Qt warns of an application outside the main thread. Here that is so on purpose.
        if (text.contains(QStringLiteral("was not created in the main() thread")))
            return;
        former(type, context, text);
        const bool broken = text.startsWith(QStringLiteral("The X11 connection broke")) ||
                            text.startsWith(QStringLiteral("The Wayland connection broke"));
        const auto* const application = QCoreApplication::instance();
        if (broken && application && application->thread() == QThread::currentThread())
            Strand();
    }
    static inline QtMessageHandler former = nullptr;
};

// The host's threads take the host's signals.
void Block_Signals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

// On its own thread, when it gets there.
void Exit(QCoreApplication& application) {
    QMetaObject::invokeMethod(
        &application, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
}

// Runs one job at a time. It waits for the next one to the end of the process and is never joined: by then
// parts of Qt may be gone that the end of one of its threads needs.
class Kept_Thread {
public:
    static Kept_Thread& The() {
        static auto* const kept = new Kept_Thread;
        return *kept;
    }
    ~Kept_Thread() = delete;
    Kept_Thread(const Kept_Thread&) = delete;
    Kept_Thread& operator=(const Kept_Thread&) = delete;

    std::future<void> Start(std::function<void()> what) {
        const std::lock_guard lock(mutex);
        job = std::packaged_task<void()>(std::move(what));
        changed.notify_all();
        return job.get_future();
    }

private:
    Kept_Thread() {
        std::thread([this] { Run(); }).detach();
    }
    [[noreturn]] void Run();

    std::mutex mutex;
    std::condition_variable changed;
    std::packaged_task<void()> job;
};

void Kept_Thread::Run() {
    Block_Signals();
    std::unique_lock lock(mutex);
    for (;;) {
        changed.wait(lock, [this] { return job.valid(); });
        auto now = std::exchange(job, {});
        lock.unlock();
        now();
        lock.lock();
    }
}

} // namespace

Gui_Thread::Gui_Thread() {
    Require_Display();
    std::promise<void> started;
    ended = Kept_Thread::The().Start([this, &started] { Run(started); });
    try {
        started.get_future().get();
    } catch (...) {
        ended.wait();
        throw;
    }
}

void Gui_Thread::Run(std::promise<void>& started) {
    try {
        int count = 1;
        char* names[] = {program_invocation_name, nullptr};
        const Listener listener;
        const auto own = Create_Application(count, names);
        QApplication::setQuitOnLastWindowClosed(false);
        Set_Application(own.get());
        started.set_value(); // and is gone
        QApplication::exec();
        Set_Application(nullptr);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    } catch (...) { // before it started: exec throws nothing
        started.set_exception(std::current_exception());
    }
}

void Gui_Thread::Require_Display() {
    if (stranded)
        throw Cannot_Show("There is no display: it went away; start the program anew to use another");
}

Gui_Thread::~Gui_Thread() {
    if (stranded)
        return;
    {
        const std::lock_guard lock(mutex);
        if (application)
            Exit(*application);
    }
    ended.wait();
}

void Gui_Thread::Set_Application(QCoreApplication* now) {
    const std::lock_guard lock(mutex);
    application = now;
}

bool Gui_Thread::Is_Running() const {
    const std::lock_guard lock(mutex);
    return application != nullptr;
}

} // namespace window
