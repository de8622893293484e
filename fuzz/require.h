// What every fuzz target states about what it has seen.
#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the process with the statement when it does not hold.
#define REQUIRE(statement)                                                                                   \
    do {                                                                                                     \
        if (!(statement)) {                                                                                  \
            std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #statement);              \
            std::abort();                                                                                    \
        }                                                                                                    \
    } while (false)
