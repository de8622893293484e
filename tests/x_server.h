// An X server of a test's own, and the hands of a person before it.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "program_run.h"
#include "script_files.h"

// Looks again and again, for a while.
inline bool Comes(const std::function<bool()>& what) {
    using namespace std::chrono;
    const auto end = steady_clock::now() + seconds(20);
    while (!what()) {
        if (steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(milliseconds(5));
    }
    return true;
}

// What a server says of itself when it is ready, in a line on its output.
inline std::string Announcement(const program_run::Program& server, const Temporary_Folder& home) {
    const auto out = [&] { return Bytes_Of_File(home / "out"); };
    if (!Comes([&] { return server.Has_Ended() || out().ends_with('\n'); }) || server.Has_Ended())
        throw std::runtime_error("a server does not start: " + Bytes_Of_File(home / "errors"));
    return script_files::Lines(out()).at(0);
}

// A server of its own, without a window manager.
class X_Server {
public:
    X_Server() = default;
    ~X_Server() {
        server.Ask_To_End(); // it takes its socket and its lock away
        server.End();
    }
    X_Server(const X_Server&) = delete;
    X_Server& operator=(const X_Server&) = delete;

    const std::string& Display() const { return display; }

    // xdotool's answer; empty when there is none.
    std::string Tool(std::vector<std::string> words) const {
        words.insert(words.begin(), {display, "xdotool"});
        const Temporary_Folder out;
        return program_run::Run("/usr/bin/env", words, out, out.String()).Out;
    }
    // Windows of that title that can be seen.
    std::vector<std::string> Windows(const std::string& title) const {
        return script_files::Words(Tool({"search", "--onlyvisible", "--name", "^" + title + "$"}));
    }

private:
    const Temporary_Folder home;
    program_run::Program server{"/usr/bin/env",
                                {"Xvfb", "-displayfd", "1", "-screen", "0", "1280x1024x24", "-dpi", "96",
                                 "-nolisten", "tcp", "-noreset"},
                                home,
                                home.String()};
    const std::string display = "DISPLAY=:" + Announcement(server, home);
};
