// The standard descriptors as the program finds them.
#pragma once

#include <array>
#include <streambuf>

namespace host {

// A file that is opened later must not become standard output or error: those that are closed stay useless,
// but taken.
void Take_Closed_Descriptors();

// Standard input by its descriptor: unlike the library's own, it tells a failure (Start_Error) from the end.
class Input_Buffer final : public std::streambuf {
protected:
    int_type underflow() override;

private:
    std::array<char, 65536> buffer{};
};

} // namespace host
