#include "bridge.h"

#include <QCoreApplication>
#include <QEvent>

#include <chrono>
#include <utility>

#include "event_turn.h"

namespace window {

namespace {

constexpr std::chrono::milliseconds Slow{100}; // from here on a person notices that nothing moves

} // namespace

// The form's thread

// What is asked for lies on the stack.
struct Bridge::Withdrawal {
    Bridge& From;
    Lock& Held;
    Request* const Former;
    ~Withdrawal() {
        if (!Held.owns_lock())
            Held.lock();
        From.request = Former;
        std::erase(asking, &From);
    }
};

bool Bridge::Wait(const Work& work, const bool& done) {
    const Stay stay(*this);
    Request asked{work, done, nullptr};
    Lock lock(mutex);
    if (lost)
        return false;
    const Withdrawal at_end{*this, lock, std::exchange(request, &asked)};
    if (state == State::Free) {
        asking.push_back(this);
        QCoreApplication::postEvent(receiver, new QEvent(QEvent::User));
    }
    for (;;) {
        Enter(State::Waits);
        changed.wait(lock, [this] { return state != State::Waits; });
        if (job)
            Run_Job(lock);
        if (lost)
            return false;
        if (asked.Failure)
            std::rethrow_exception(asked.Failure);
        if (done)
            return true;
    }
}

bool Bridge::Call(const Work& work) {
    bool done = false;
    return Wait(
        [&] {
            work();
            done = true;
        },
        done);
}

void Bridge::Run_Job(Lock& lock) {
    const Work now = std::exchange(job, nullptr);
    lock.unlock();
    try {
        now();
    } catch (...) { // it would leave this wait, which Qt's thread may be at work for
    }
    lock.lock();
}

void Bridge::Leave() {
    if (--depth > 0)
        return;
    const Lock lock(mutex);
    Enter(State::Free);
}

void Bridge::Close() {
    const Lock lock(mutex);
    lost = true;
    if (receiver)
        receiver->deleteLater();
}

void Bridge::Enter(State next) {
    state = next;
    changed.notify_all();
}

// Qt's thread

void Bridge::Set_Receiver(QObject* object) {
    const Lock lock(mutex);
    receiver = object;
}

void Bridge::Serve() {
    Lock lock(mutex);
    std::erase(asking, this);
    if (state == State::Waits && Fulfil(lock))
        Let_Run(lock);
}

void Bridge::Run(Work wanted) {
    Lock lock(mutex);
    if (!Waits_For_A_Person())
        return;
    job = std::move(wanted);
    Let_Run(lock);
}

void Bridge::Continue() {
    Lock lock(mutex);
    if (state == State::Waits)
        Let_Run(lock);
}

// Does what the form's thread asks for, until that waits for a person or is free.
void Bridge::Let_Run(Lock& lock) {
    do {
        Enter(State::Runs);
        Await(lock);
    } while (state == State::Waits && Fulfil(lock));
}

// Meanwhile the other threads are served and the windows painted; what a person does has to wait.
void Bridge::Await(Lock& lock) {
    for (;;) {
        changed.wait_for(lock, Slow, [this] { return state != State::Runs || !asking.empty(); });
        if (state != State::Runs)
            return;
        Bridge* const other = asking.empty() ? nullptr : asking.front();
        lock.unlock();
        if (other)
            other->Serve();
        else
            Take_Turn();
        lock.lock();
    }
}

// Whether there was a request, and the form's thread needs to wait for it no longer.
bool Bridge::Fulfil(Lock& lock) {
    Request* const asked = std::exchange(request, nullptr);
    if (!asked)
        return false;
    lock.unlock();
    std::exception_ptr failure;
    try {
        asked->What();
    } catch (...) {
        failure = std::current_exception();
    }
    lock.lock();
    if (lost)
        return false;
    asked->Failure = failure;
    return failure || asked->Done;
}

bool Bridge::May_Read() const {
    const Lock lock(mutex);
    return Waits_For_A_Person();
}

// In a turn that Qt's thread takes meanwhile, a request may be waiting for Qt's thread in turn.
bool Bridge::Waits_For_A_Person() const {
    return state == State::Waits && !request;
}

void Bridge::Lose() {
    const Lock lock(mutex);
    lost = true;
    request = nullptr;
    Enter(State::Free);
}

} // namespace window
