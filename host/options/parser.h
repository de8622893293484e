// The library behind the options.
#pragma once

#include <CLI/CLI.hpp>

#include "options/options.h"
#include "process/errors.h"

namespace host {

struct Options::Parser {
    CLI::App& App;
};

} // namespace host
