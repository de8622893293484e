// The tests run as root in CI, and as anybody elsewhere; what is about rights is done by somebody without
// any.
#pragma once

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <filesystem>
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
