#include "components.h"

namespace stores {

namespace {

using automation::Guard;
using automation::Status;
using automation::String;
using automation::Variant;

// Refuses double quotes and two or more single quotes in a row; stores every other label as it is.
class Label_Checker final : public automation::Object<interfaces::Label_Checker> {
public:
    Status Is_Label_Allowed(const Variant& Label, bool& Allowed) override {
        return Guard(Program_Identity, [&] {
            const String label = Label.To_Text();
            Allowed = label.find(u'"') == String::npos && label.find(u"''") == String::npos;
        });
    }
    Status Prepare_Label(const Variant& Label, Variant& Result) override {
        return Guard(Program_Identity, [&] { Result = Variant(Label.To_Text()); });
    }
};

} // namespace

New_Object Make_Label_Checker() {
    return automation::Make_Object<Label_Checker>();
}

} // namespace stores
