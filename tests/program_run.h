// Runs the built program in a folder of its own, for tests that look at it from outside.
#pragma once

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <utility>
#include <vector>

#include "temporary_folder.h"

namespace program_run {

struct Outcome {
    int Status = -1; // the exit status, or minus the signal that ended it
    std::string Out, Errors;
};

namespace detail {

inline void Redirect(int descriptor, const std::string& path, int flags) {
    const int file = open(path.c_str(), flags, 0600);
    if (file < 0 || dup2(file, descriptor) < 0)
        _exit(126);
}

[[noreturn]] inline void Become(const std::vector<std::string>& words, const Temporary_Folder& home,
                                const std::string& working_folder) {
    Redirect(0, home / "in", O_RDONLY);
    Redirect(1, home / "out", O_WRONLY | O_CREAT | O_TRUNC);
    Redirect(2, home / "errors", O_WRONLY | O_CREAT | O_TRUNC);
    setenv("HOME", home.String().c_str(), 1);
    unsetenv("XDG_DATA_HOME");
    unsetenv("XDG_CONFIG_HOME");
    setenv("STYLE_NODE_MACHINE_CLASSES", (home / "machine").c_str(), 1);
    setenv("LSAN_OPTIONS", "suppressions=" LEAKS ":print_suppressions=0", 1);
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    unsetenv("QT_QPA_PLATFORM");
    std::vector<char*> pointers;
    for (const std::string& word : words)
        pointers.push_back(const_cast<char*>(word.c_str())); // NOLINT: execv does not write
    pointers.push_back(nullptr);
    if (chdir(working_folder.c_str()) == 0)
        execv(pointers[0], pointers.data());
    _exit(127);
}

} // namespace detail

// A program that runs; it is ended with this object at the latest. `home` is its home folder: its own store
// comes to lie there, empty at first. There is no screen.
class Program {
public:
    Program(const std::string& program, std::vector<std::string> arguments, const Temporary_Folder& home,
            const std::string& working_folder, const std::string& input = {})
        : home(home) {
        arguments.insert(arguments.begin(), program);
        Write_File(home / "in", input);
        Write_File(home / "out", {}); // who looks before the program has written finds nothing in it
        child = fork();
        if (child == 0)
            detail::Become(arguments, home, working_folder);
        if (child < 0)
            throw std::runtime_error("the program cannot be run");
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() {
        if (child > 0 && kill(child, SIGKILL) == 0)
            waitpid(child, nullptr, 0);
    }

    Outcome End() {
        int status = 0;
        if (waitpid(std::exchange(child, 0), &status, 0) < 0)
            throw std::runtime_error("the program has gone");
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), Bytes_Of_File(home / "out"),
                Bytes_Of_File(home / "errors")};
    }
    void Send(int signal) const { kill(child, signal); }
    void Ask_To_End() const { Send(SIGTERM); }
    bool Has_Ended() const {
        siginfo_t about{};
        return waitid(P_PID, static_cast<id_t>(child), &about, WEXITED | WNOHANG | WNOWAIT) == 0 &&
               about.si_pid == child;
    }

private:
    const Temporary_Folder& home;
    pid_t child = 0;
};

inline Outcome Run(const std::string& program, const std::vector<std::string>& arguments,
                   const Temporary_Folder& home, const std::string& working_folder,
                   const std::string& input = {}) {
    return Program(program, arguments, home, working_folder, input).End();
}

} // namespace program_run
