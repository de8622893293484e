#include "components.h"
#include "toolkit/display.h"

namespace stores {

namespace {

using automation::Long;
using automation::Status;
using automation::String;
using automation::Variant;

// Shows the product's boxes on the calling thread's Display.
class Message_Box final : public Component<interfaces::Message_Box> {
public:
    Status Box_Error_Location(automation::Text& Result) override {
        return Serve([&] { Result = automation::Text(error_location); });
    }
    Status Box_Error_Code(Long& Result) override {
        return Serve([&] { Result = error_code; });
    }
    Status Box_Error_Description(automation::Text& Result) override {
        return Serve([&] { Result = automation::Text(error_description); });
    }
    Status Show_Box(const Variant& Language, const Variant& Text, const Variant& Kind, const Variant& Buttons,
                    const Variant& Title, Long& Answer) override {
        return Serve([&] {
            toolkit::Message message;
            message.By_Product = true;
            message.Language = Language.To_Long();
            message.Text = Text.To_Text();
            message.Kind = Kind.To_Long();
            message.Buttons = Buttons.To_Long();
            message.Title = Title.To_Text();
            Answer = toolkit::Show_Message(message);
            if (Answer == toolkit::answer::Not_Shown)
                Remember_Not_Shown();
        });
    }

private:
    void Remember_Not_Shown() {
        error_location = u"KOR_MsgBox";
        error_code = automation::Status_Unspecified;
        error_description = u"The message box could not be shown";
    }

    String error_location;
    Long error_code = 0;
    String error_description;
};

} // namespace

New_Object Make_Message_Box() {
    return automation::Make_Object<Message_Box>();
}

} // namespace stores
