#include "automation/interruption.h"

#include <atomic>
#include <csignal>

namespace automation {

namespace {

std::atomic<bool> interrupted{false};
std::atomic<int> critical_sections{0};
std::atomic<int> put_off{0}; // a signal

} // namespace

void Interrupt() noexcept {
    interrupted = true;
}

bool Is_Interrupted() noexcept {
    return interrupted;
}

void Forget_Interruption() noexcept {
    interrupted = false;
}

Critical_Section::Critical_Section() noexcept {
    ++critical_sections;
}

Critical_Section::~Critical_Section() {
    if (--critical_sections == 0)
        if (const int signal = put_off.exchange(0))
            std::raise(signal);
}

bool Critical_Section::Puts_Off(int signal) noexcept {
    if (critical_sections == 0)
        return false;
    put_off = signal;
    return true;
}

} // namespace automation
