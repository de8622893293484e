// What a run prints: one JSON object a line, UTF-8, each line flushed.
//
// The stream belongs to the caller and outlives the transcript. Controls and forms must not have been
// unloaded. Texts that are no well-formed UTF-16 are printed with U+FFFD in place of lone surrogates.
// Belongs to one thread.
#pragma once

#include <ostream>

#include "toolkit/snapshot.h"
#include "transcript/job.h"

namespace host {

class Transcript {
public:
    explicit Transcript(std::ostream& out) : out(&out) {}
    // From now on; the stream outlives the transcript.
    void Write_To(std::ostream& other) { out = &other; }

    void Call(String_View component, String_View operation, const std::vector<String>& arguments);
    void Box(const toolkit::Message& message, Long answer);
    void No_Form();
    // `seen`: what is shown of it.
    void Form(const toolkit::Form& form, const toolkit::Form_Snapshot& seen);
    void Control(const toolkit::Control& control, const toolkit::Control_Snapshot& seen);
    void Items(const toolkit::List_Control& list);
    // A line of a script, counted from 1, that a user could not perform.
    void Refused(int line, String_View command, String_View reason);
    void Result(const Job_Outcome& outcome);

private:
    std::ostream* out;
};

} // namespace host
