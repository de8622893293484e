// What SIGINT, SIGTERM and SIGHUP do to a command. One object at a time, on the main thread.
#pragma once

namespace host {

class Interruption {
public:
    enum class Way {
        Unwinds, // the command notices, takes back what is not finished and says what has changed
        At_Once, // the process says that what was saved stays, and ends
    };
    explicit Interruption(Way way);
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    static bool Has_Come();
    // Ends the process by the signal that has come, if one has.
    static void End_By_Signal();
};

} // namespace host
