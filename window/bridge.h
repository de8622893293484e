// The hand-over between a form's thread and the thread that Qt runs on.
//
// The form's thread is free until it asks Qt's thread for something. From then on, and for as long as it
// stays (see Stay), exactly one of the two runs: Qt's thread while the form's waits, the form's while Qt's
// waits for it. So each may use what belongs to the other whenever it runs, without a lock of its own. No
// wait for a person leaves anything on the stack of Qt's thread, so the forms of several threads do not hold
// each other up.
//
// When Qt's application ends the bridge is lost: whatever the form's thread waits for comes back with false.
#pragma once

#include <QObject>

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <vector>

namespace window {

using Work = std::function<void()>;

class Bridge {
public:
    // On the form's thread: keeps Qt's thread from running on its own accord in between two waits.
    class Stay {
    public:
        explicit Stay(Bridge& bridge) : bridge(bridge) { ++bridge.depth; }
        ~Stay() { bridge.Leave(); }
        Stay(const Stay&) = delete;
        Stay& operator=(const Stay&) = delete;

    private:
        Bridge& bridge;
    };

    // On the form's thread. Has Qt's thread do the work, then serves it until it has set `done`. Throws what
    // the work threw; false when the bridge is lost, with the work done or not.
    bool Wait(const Work& work, const bool& done);
    bool Call(const Work& work);
    // The form's thread goes; so does the receiver, soon.
    void Close();

    // Qt's thread. `object` gets an event whenever the form's thread, being free, asks for something, and
    // then calls Serve.
    void Set_Receiver(QObject* object);
    void Serve();
    // Runs a job, which throws nothing, on the form's thread while that waits; otherwise does nothing.
    void Run(Work job);
    // Has the form's thread look whether it still waits.
    void Continue();
    // The form's thread stands still, and not in the middle of what it does.
    bool May_Read() const;
    void Lose();

private:
    enum class State { Free, Waits, Runs }; // the form's thread; while it runs, Qt's thread waits for it
    struct Request {
        const Work& What;
        const bool& Done;
        std::exception_ptr Failure;
    };
    using Lock = std::unique_lock<std::mutex>;
    struct Withdrawal;

    bool Waits_For_A_Person() const;
    void Enter(State next);
    void Run_Job(Lock& lock);
    void Leave();
    void Let_Run(Lock& lock);
    void Await(Lock& lock);
    bool Fulfil(Lock& lock);

    // Of all bridges, so that Qt's thread, while it waits for one, hears of the others. Never destroyed: a
    // thread may still wait when the process ends.
    static inline std::mutex& mutex = *new std::mutex;
    static inline std::condition_variable& changed = *new std::condition_variable;
    static inline std::vector<Bridge*>& asking = *new std::vector<Bridge*>; // whose form's threads were free
    State state = State::Free;
    bool lost = false;
    Request* request = nullptr; // of the form's thread, on its stack
    Work job;                   // for the form's thread
    QObject* receiver = nullptr;
    int depth = 0; // the form's thread's own
};

} // namespace window
