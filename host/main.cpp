#include <csignal>
#include <iostream>

#include "host/program.h"
#include "process/standard_streams.h"

int main(int argc, char** argv) {
    host::Take_Closed_Descriptors();
    std::signal(SIGPIPE, SIG_IGN); // an output that nobody reads is an error like a full disk,
    std::signal(SIGXFSZ, SIG_IGN); // and so is a limit of its size
    host::Input_Buffer buffer;
    std::istream input(&buffer);
    return host::Run_Program({argv, argv + argc}, {input, std::cout, std::cerr});
}
