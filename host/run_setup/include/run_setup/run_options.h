// Options that several commands share. Paths are in the file system's encoding.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "options/options.h"
#include "transcript/job.h"

namespace host {

struct Common_Options {
    std::optional<std::string> Store; // without it, the user's own
    std::optional<std::string> Strings;
    std::optional<std::string> App_Data; // empty: the shell answers none
    std::optional<std::string> Registry;
    bool Trace = false;
    std::vector<std::string> Failures, Exceptions, Replies, Missing;
};

void Declare_Store(Options& options, std::optional<std::string>& store);
void Declare_Common(Options& options, Common_Options& common);
void Declare_Faults(Options& options, Common_Options& common);
// Configuration and partition, 1 and 1 unless given.
void Declare_Partition(Options& options, Job& place);

// An identifier of the product, which may be any 16-bit number, and a node's number, which is none below 0.
template <typename Target>
void Declare_Identifier(Options& options, const std::string& name, Target& target, const std::string& help) {
    options.Number<Integer>(name, target, INT16_MIN, INT16_MAX, help);
}
template <typename Target>
void Declare_Node(Options& options, Target& target, const std::string& help,
                  Options::Needed needed = Options::Needed::No) {
    options.Number<Integer>("--node", target, 0, INT16_MAX, help, needed);
}

} // namespace host
