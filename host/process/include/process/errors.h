// What ends the program before or instead of its work. The message is one line that names the thing and says
// what to do about it.
#pragma once

#include <stdexcept>

namespace host {

// Exit statuses of the program.
namespace status {
constexpr int OK = 0;
constexpr int Shown_Failed = 1;
constexpr int Class_Not_Found = 1; // of list
constexpr int Strings_Wrong = 1;   // of strings check
constexpr int Refused = 1;         // of store apply
constexpr int Wrong_Usage = 2;
constexpr int Cannot_Start = 3;
} // namespace status

struct Usage_Error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Start_Error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Says itself what has become of the store.
struct Outcome_Error : Start_Error {
    using Start_Error::Start_Error;
};

} // namespace host
