// What becomes of the calls on the product's components: which are printed, which fail, and which answer a
// given text.
//
// A plan is made from the command line and then shared by all proxies (component_proxies.h). It counts the
// calls of every operation over the whole run, whatever object they come on. Belongs to one thread.
#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <span>

#include "automation/variant.h"
#include "transcript/transcript.h"

namespace host {

// An operation of the product's components that a plan can name.
struct Operation {
    enum class Kind {
        Reads,  // answers a recordset's text
        Writes, // also those of the label checker
        Shows,  // printed as the box that it shows
    };
    String_View Component; // programmatic identifier
    String_View Name;
    Kind Does;
};
std::span<const Operation> All_Operations();

class Fault_Plan {
public:
    // OPERATION[@K][=NUMBER:DESCRIPTION]. Throws Usage_Error.
    void Add_Failure(const std::string& option);
    // OPERATION[@K]: the call throws what no component may. Throws Usage_Error.
    void Add_Exception(const std::string& option);
    // OPERATION[@K]=FILE. Throws Usage_Error; Start_Error when the file cannot be read as UTF-8.
    void Add_Reply(const std::string& option);
    // Every call of a reading operation answers the text.
    void Answer(String_View operation, String text);
    // Prints every call before it runs. The transcript outlives the plan.
    void Trace(Transcript& transcript) { trace = &transcript; }

    bool Is_Idle() const {
        return trace == nullptr && failures.empty() && exceptions.empty() && replies.empty();
    }

    using Variant = automation::Variant;
    // One call: printed, then failed, answered or passed on. The answer is a status, with the failure in the
    // thread's error object; only a planned exception is thrown.
    automation::Status Call(String_View operation, std::initializer_list<const Variant*> arguments,
                            Variant* result, const std::function<automation::Status()>& pass);

private:
    template <typename Effect>
    struct Planned {
        const Operation* Target;
        Long Which; // counted from 1; 0 means every call
        Effect Then;
    };
    struct Target {
        const Operation* Named;
        Long Which;
        std::optional<std::string> Effect; // behind the "="
    };
    static Target Parse_Target(const std::string& option);
    template <typename Effect>
    const Effect* Find(const std::vector<Planned<Effect>>& planned, const Operation& operation) const;
    void Print(const Operation& operation, std::initializer_list<const Variant*> arguments);

    Transcript* trace = nullptr;
    std::vector<Planned<automation::Failure>> failures;
    struct Foreign_Exception {};
    std::vector<Planned<Foreign_Exception>> exceptions;
    std::vector<Planned<String>> replies;
    std::map<const Operation*, Long> calls;
};

} // namespace host
