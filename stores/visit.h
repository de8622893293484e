// An editor at work on a store: who it is, and when it read what it may write later. Made and used by one
// thread.
//
// The components of one thread share a visit, for it is one dialog that stands behind them; it ends with the
// last of them. Its own changes are therefore no news to it, and those of every other visit are, in the same
// program too.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "connection.h"

namespace stores {

class Visit {
public:
    // `database_user`: whom the server takes the program for; nothing for a file.
    explicit Visit(std::optional<std::string> database_user);

    // The user of the operating system and the machine, as name@host.
    const std::string& Person() const { return person; }
    Value Database_User() const { return database_user ? Value(*database_user) : Value(nullptr); }
    // Unlike every other visit's.
    const std::string& Editor() const { return editor; }

    // The nodes of a partition were read when `change` was the last one.
    void Note_Reading(int config, int partition, std::string change);
    // Nothing when the partition's nodes were not read.
    std::optional<std::string> Read_At(int config, int partition) const;

    bool Changes = false; // a Change is under way

private:
    const std::string person, editor;
    const std::optional<std::string> database_user;
    std::map<std::pair<int, int>, std::string> readings;
};

} // namespace stores
