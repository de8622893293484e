// The wish of a person or the system that the process ends. Callable from any thread; the first three also
// from signal handlers.
#pragma once

namespace automation {

// From now on long work ends with a failure as soon as it can.
void Interrupt() noexcept;
bool Is_Interrupted() noexcept;
// For the next work of the process.
void Forget_Interruption() noexcept;

// While one lives, an end of the process would leave something half done.
class Critical_Section {
public:
    Critical_Section() noexcept;
    ~Critical_Section();
    Critical_Section(const Critical_Section&) = delete;
    Critical_Section& operator=(const Critical_Section&) = delete;

    // For a signal handler: false when none lives, else the signal is raised again when the last one ends.
    static bool Puts_Off(int signal) noexcept;
};

} // namespace automation
