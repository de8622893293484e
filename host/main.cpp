#include <iostream>

#include "host/program.h"

int main(int argc, char** argv) {
    return host::Run_Program({argv, argv + argc}, {std::cin, std::cout, std::cerr});
}
