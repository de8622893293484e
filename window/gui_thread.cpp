#include "gui_thread.h"

#include <QThread>

#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <functional>
#include <thread>
#include <utility>

#include "application.h"
#include "window/qt_display.h"
#include "window_host.h"

namespace window {

namespace {

// Between the threads; never destroyed, because one of them waits to the end of the process.
std::mutex& guarding = *new std::mutex;
std::condition_variable& changed = *new std::condition_variable;
bool stranded = false;

using Lock = std::unique_lock<std::mutex>;

// Qt ends the process when its display goes away. The host is to live on: its threads are told, and the one
// that would end it stops for good.
[[noreturn]] void Strand() {
    {
        const Lock lock(guarding);
        stranded = true;
        changed.notify_all();
    }
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

// The host's threads take the host's signals, but for what this thread itself runs into: the host may have a
// handler that reports a crash.
void Block_Signals() {
    sigset_t blocked;
    sigfillset(&blocked);
    for (const int own : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS})
        sigdelset(&blocked, own);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
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

    // `what` throws nothing.
    void Start(std::function<void()> what) {
        const Lock lock(guarding);
        job = std::move(what);
        changed.notify_all();
    }

private:
    Kept_Thread() {
        std::thread([this] { Run(); }).detach();
    }
    [[noreturn]] void Run();

    std::function<void()> job;
};

void Kept_Thread::Run() {
    Block_Signals();
    Lock lock(guarding);
    for (;;) {
        changed.wait(lock, [this] { return job != nullptr; });
        const auto now = std::exchange(job, nullptr);
        lock.unlock();
        now();
        lock.lock();
    }
}

} // namespace

Gui_Thread::Gui_Thread() {
    Require_Display();
    Kept_Thread::The().Start([this] { Run(); });
    {
        Lock lock(guarding);
        changed.wait(lock, [this] { return stage != Stage::Starts || stranded; });
    }
    Require_Display();
    if (failure)
        std::rethrow_exception(failure);
}

void Gui_Thread::Run() {
    try {
        const Listener listener;
        const auto own = Create_Application({program_invocation_name});
        QApplication::setQuitOnLastWindowClosed(false);
        QObject::connect(own.get(), &QCoreApplication::aboutToQuit, own.get(), [this] { Set(Stage::Ends); });
        application = own.get();
        Set(Stage::Runs);
        QApplication::exec();
        Set(Stage::Ends);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    } catch (...) {
        failure = std::current_exception(); // which nobody hears of who has seen it run
    }
    Set(Stage::Has_Ended);
}

void Gui_Thread::Require_Display() {
    const Lock lock(guarding);
    if (stranded)
        throw Cannot_Show("There is no display: it went away; start the program anew to use another");
}

Gui_Thread::~Gui_Thread() {
    {
        const Lock lock(guarding);
        if (stage == Stage::Runs && !stranded)
            Exit(*application);
    }
    Await_End();
}

void Gui_Thread::Await_End() {
    Lock lock(guarding);
    changed.wait(lock, [this] { return stage == Stage::Has_Ended || stranded; });
}

void Gui_Thread::Set(Stage now) {
    const Lock lock(guarding);
    stage = now;
    changed.notify_all();
}

bool Gui_Thread::Is_Running() const {
    const Lock lock(guarding);
    return stage == Stage::Runs && !stranded;
}

} // namespace window
