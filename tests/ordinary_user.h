// The tests run as root in CI, and as anybody elsewhere; what is about rights is done by somebody without
// any.
#pragma once

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <functional>
#include <stdexcept>
#include <string>

// Who root becomes; everybody else stays who they are.
inline const passwd* Ordinary_User() {
    return geteuid() == 0 ? getpwnam("nobody") : getpwuid(geteuid());
}

// In a child process: there is no way back.
inline bool Become_Ordinary_User() {
    const passwd* user = Ordinary_User();
    return geteuid() != 0 ||
           (user && setgroups(0, nullptr) == 0 && setgid(user->pw_gid) == 0 && setuid(user->pw_uid) == 0);
}

inline void Give_To_Ordinary_User(const std::string& path) {
    const passwd* user = Ordinary_User();
    if (!user || (geteuid() == 0 && chown(path.c_str(), user->pw_uid, user->pw_gid) != 0))
        throw std::runtime_error(path + " cannot be given away");
}

// What the body answers in a process of the ordinary user's, under that umask; "died" when it does not come
// back.
inline std::string As_Ordinary_User(mode_t mask, const std::function<std::string()>& body) {
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    const pid_t child = fork();
    if (child == 0) {
        umask(mask);
        const std::string answer = Become_Ordinary_User() ? body() : "still root";
        _exit(write(pipe[1], answer.data(), answer.size()) == static_cast<ssize_t>(answer.size()) ? 0 : 1);
    }
    close(pipe[1]);
    std::string answer;
    std::array<char, 4096> part{};
    for (ssize_t count; (count = read(pipe[0], part.data(), part.size())) > 0;)
        answer.append(part.data(), static_cast<std::size_t>(count));
    close(pipe[0]);
    int status = -1;
    waitpid(child, &status, 0);
    return status == 0 ? answer : "died";
}
