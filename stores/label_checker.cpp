#include "components.h"

namespace stores {

namespace {

using automation::Status;
using automation::String;
using automation::Variant;

// Refuses double quotes and two or more single quotes in a row; stores every other label as it is.
class Label_Checker final : public Component<interfaces::Label_Checker> {
public:
    Status Is_Label_Allowed(const Variant& Label, Automation_Boolean& Allowed) override {
        return Serve([&] {
            const String label = Label.To_Text();
            const bool allowed = label.find(u'"') == String::npos && label.find(u"''") == String::npos;
            Allowed = allowed ? AUTOMATION_TRUE : AUTOMATION_FALSE;
        });
    }
    Status Prepare_Label(const Variant& Label, Variant& Result) override {
        return Serve([&] { Result = Variant(Label.To_Text()); });
    }
};

} // namespace

New_Object Make_Label_Checker() {
    return automation::Make_Object<Label_Checker>();
}

} // namespace stores
