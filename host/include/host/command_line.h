// The command line of style-editor, understood but not yet checked against files, stores or components.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/errors.h"
#include "host/job.h"

namespace host {

// Options that `edit` and `play` share. Paths are in the file system's encoding.
struct Common_Options {
    std::optional<std::string> Store; // without it, the user's own
    std::optional<std::string> Strings;
    std::optional<std::string> App_Data; // empty: the shell answers none
    std::optional<std::string> Registry;
    bool Trace = false;
    std::vector<std::string> Failures, Exceptions, Replies, Missing;
};

struct Edit_Command {
    Common_Options Common;
    Job Wanted;
    bool Terminal = false; // else a window, or a terminal where there is none
};

struct Play_Command {
    Common_Options Common;
    std::string Script;                 // "-" is standard input
    std::optional<std::string> Picture; // file for a picture of the dialog as the script last left it
    bool Window = false;                // on real widgets instead of the bare controls
    bool Terminal = false;              // in a text terminal instead
};

struct Store_Init_Command {
    std::optional<std::string> Store;
    std::optional<int> Nodes;
};

struct Store_History_Command {
    std::optional<std::string> Store;
    std::optional<Integer> Config_ID, Partition_ID, Node_Number; // without one, all
    bool As_JSON = false;
};

struct Store_Upgrade_Command {
    std::optional<std::string> Store;
};

// store export: a partition as JSON Lines.
struct Export_Command {
    Common_Options Common;          // the store
    Job Place;                      // configuration and partition
    std::optional<std::string> Out; // a new file instead of standard output
    bool As_Spreadsheet = false;
};

// store apply: edited lines back into the store.
struct Apply_Command {
    Common_Options Common; // the store
    Job Place;             // configuration and partition
    std::string File;      // "-" is standard input
    bool Dry_Run = false;
    bool Force = false; // also over what others have changed since
};

// store find: the nodes that hold a text.
struct Find_Command {
    Common_Options Common; // the store
    Job Place;             // configuration and partition
    std::string Text;
};

// store show: one node.
struct Show_Command {
    Common_Options Common; // the store
    Job Place;
};

// store revert: recorded changes, taken back.
struct Revert_Command {
    std::optional<std::string> Store;
    std::string First, Last; // decimal numbers of changes
    bool Dry_Run = false;
    bool Force = false;
};

// register and unregister: modules by their absolute paths.
struct Register_Command {
    std::vector<std::string> Modules;
    bool Machine = false; // else for this user
    bool Removes = false;
};

struct List_Command {
    std::vector<std::string> Classes; // programmatic identifiers to explain; none: list what is registered
};

// strings check FILE, strings picture FILE PNG
struct Strings_Command {
    std::string File;
    std::string Picture;             // empty: check
    std::optional<Integer> Language; // of the picture; without it the file's first
};

// The help or the version, to be printed.
struct Information {
    std::string Text;
};

using Command_Line =
    std::variant<Edit_Command, Play_Command, Store_Init_Command, Export_Command, Apply_Command, Find_Command,
                 Show_Command, Revert_Command, Store_History_Command, Store_Upgrade_Command, Register_Command,
                 List_Command, Strings_Command, Information>;

// `arguments` without the program's name. Throws Usage_Error.
Command_Line Parse_Command_Line(const std::vector<std::string>& arguments);

} // namespace host
