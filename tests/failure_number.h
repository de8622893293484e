// What a body of a test ends with, as text that can stand in a table.
#pragma once

#include <string>
#include <type_traits>

#include "automation/failure.h"
#include "automation/text.h"

// Number of the run-time failure that the body ends with; 0 when it ends well.
template <typename Body>
automation::Long Failure_Number(Body&& body) {
    try {
        body();
        return 0;
    } catch (const automation::Failure& failure) {
        return failure.Number;
    }
}

// The body's value as text, "!" and the number when it fails.
template <typename Body>
std::string Outcome(Body&& body) {
    std::string value;
    const automation::Long failure = Failure_Number([&] {
        if constexpr (std::is_arithmetic_v<decltype(body())>)
            value = std::to_string(body());
        else
            value = automation::To_UTF8(body());
    });
    return failure == 0 ? value : "!" + std::to_string(failure);
}
