// A terminal that nobody sits at: a pseudo-terminal of 80 x 24 cells, whose keys come from a queue.
//
// What is shown on it is read and forgotten. The keys are sent one at a time, whenever input is awaited, as
// the bytes that a terminal sends.
#pragma once

#include <deque>
#include <string>

#include "screen.h"

namespace terminal {

class Played_Device final : public Device {
public:
    // Throws Cannot_Show.
    Played_Device();
    ~Played_Device() override;

    // Behind the keys that wait, or before them.
    void Add(const std::vector<std::string>& keys) {
        waiting.insert(waiting.end(), keys.begin(), keys.end());
    }
    void Add_First(const std::string& key) { waiting.push_front(key); }
    bool Is_Empty() const { return waiting.empty(); }
    void Clear() { waiting.clear(); }

    void Shown() override;
    void Input_Is_Awaited() override;

private:
    int master = -1;
    std::deque<std::string> waiting;
};

} // namespace terminal
