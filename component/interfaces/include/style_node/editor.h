// The editor for a C++ host: statuses become exceptions. Header-only.
//
// Every member throws automation::Failure: 429 with a reason when the component cannot be created,
// AUTOMATION_WRONG_THREAD on a foreign thread. What goes wrong inside the editor is not thrown: Shown answers
// false, and the error properties tell the last recorded error. Belongs to the thread that makes it.
#pragma once

#include "automation/create.h"
#include "style_node/busyness_rules.h"

namespace style_node {

class Editor {
public:
    Editor() : object(automation::Create_Bound<_Busyness_Rules>(_Busyness_Rules::Program_Identity)) {}

    // Blocks while the dialog is up.
    bool Shown(Integer config_id, Integer partition_id, Integer node_number, Integer language_id = 1,
               bool silent_error = false) {
        Boolean result = False;
        automation::Call(object, &_Busyness_Rules::Shown, config_id, partition_id, node_number, language_id,
                         silent_error ? True : False, result);
        const auto error = result == False ? automation::Take_Error() : std::nullopt;
        reason = error ? error->Reason : automation::String();
        return result != False;
    }
    // Why the product's components could not be created, for a person; empty unless that made Shown answer
    // false.
    const automation::String& Reason() const { return reason; }

    automation::String ErrLocation() const { return Text(&_Busyness_Rules::Get_ErrLocation); }
    Long ErrCode() const { return Value(&_Busyness_Rules::Get_ErrCode); }
    automation::String ErrDescription() const { return Text(&_Busyness_Rules::Get_ErrDescription); }
    bool SupervisedType_Blind() const { return Value(&_Busyness_Rules::Get_SupervisedType_Blind) != False; }
    void Set_SupervisedType_Blind(bool value) {
        Boolean given = value ? True : False;
        automation::Call(object, &_Busyness_Rules::Put_SupervisedType_Blind, given);
    }
    bool Editing_Default_Node() const { return Value(&_Busyness_Rules::Get_Editing_Default_Node) != False; }

private:
    template <typename Result>
    Result Value(Status (_Busyness_Rules::*property)(Result&)) const {
        Result result{};
        automation::Call(object, property, result);
        return result;
    }
    automation::String Text(Status (_Busyness_Rules::*property)(automation::Text&)) const {
        return automation::String(Value(property).View());
    }

    automation::Reference<_Busyness_Rules> object;
    automation::String reason;
};

} // namespace style_node
