// One command of the program: its name, its help, its options and what it does.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "options/options.h"
#include "process/streams.h"

namespace host {

class Subcommand {
public:
    Subcommand() = default;
    virtual ~Subcommand() = default;
    Subcommand(const Subcommand&) = delete;
    Subcommand& operator=(const Subcommand&) = delete;

    struct Outline {
        std::string Name; // "edit"; "store export" belongs to the group "store"
        std::string Help; // one line
    };
    virtual Outline About() const = 0;
    virtual void Declare(Options& options) = 0;
    // The exit status; throws what process/errors.h names, and automation::Failure.
    virtual int Run(const Streams& streams) = 0;
    // A person or a script drives it: what they have saved is saved, and a signal ends it at once.
    virtual bool Is_Driven() const { return false; }
};

using Subcommands = std::vector<std::unique_ptr<Subcommand>>;

struct Group {
    std::string Name, Help;
};

// What the command line asks for: one of the commands, with its targets filled, or a text to be printed (the
// help or the version). Throws Usage_Error. `arguments` are without the program's name.
struct Choice {
    Subcommand* Wanted = nullptr;
    std::string Text;
};
Choice Read_Command_Line(const std::vector<std::string>& arguments, const Subcommands& commands,
                         const std::vector<Group>& groups);

} // namespace host
