// A refusal of the class table as what ends the program.
#pragma once

#include "classes/registration.h"
#include "process/errors.h"

namespace host {

template <typename Body>
auto Explained(Body&& body) {
    try {
        return body();
    } catch (const classes::Registration_Error& error) {
        throw Start_Error(error.what());
    }
}

} // namespace host
